;; Examples of what a seat shows.

; textscr
(textscr) ; => nil

; graphscr
(graphscr) ; => nil

; textpage
(textpage) ; => nil

; alert
(alert "Pump P-101 has no tag") ; => nil

; grdraw
(grdraw '(0 0) '(10 0) 1) ; => nil
(grdraw '(0 0) 10 1) ; => ; error: bad argument type: 2D/3D point

; grvecs
(grvecs '(1 (0 0) (10 0) 2 (0 0) (0 10))) ; => nil

; grtext
(grtext -1 "picking") ; => "picking"
(grtext) ; => nil

; grclear
(grclear) ; => nil

; grread
(grread) ; => ; error: Function cancelled

; menucmd
(menucmd "P1=POP1") ; => nil

; menugroup
(menugroup "ACAD") ; => nil

; initdia
(initdia) ; => nil

; setfunhelp
(setfunhelp "C:PUMPS" "plant.chm") ; => "C:PUMPS"

; tablet
(tablet 0) ; => nil
