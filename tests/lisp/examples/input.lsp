;; Examples of what asks the user and what drives commands. A line that begins with ";<" is what the user
;; answers to the next form.

; initget
(initget 1 "Red Green")
;<
;< gr
(getkword "Colour [Red/Green]: ") ; => "Green"
(initget 6)
;< -5
;< 12
(getint "How many: ") ; => 12
(initget "Last")
;< l
(getpoint "Point or [Last]: ") ; => "Last"

; getpoint
;< 1,2
(getpoint "Start: ") ; => (1.0 2.0 0.0)
;< @3<90
(getpoint '(10.0 20.0) "End: ") ; => (10.0 23.0 0.0)
;<
(getpoint) ; => nil

; getcorner
;< 5,6
(getcorner '(0.0 0.0) "Other corner: ") ; => (5.0 6.0 0.0)

; getdist
;< 12.5
(getdist "Distance: ") ; => 12.5
;< 3,4
(getdist '(0.0 0.0) "Distance: ") ; => 5.0

; getangle
;< 45
(getangle "Angle: ") ; => 0.785398
;< 0,5
(getangle '(0.0 0.0)) ; => 1.5708

; getorient
;< 90
(getorient "Direction: ") ; => 1.5708

; getreal
;< 2.5
(getreal "Factor: ") ; => 2.5
;<
(getreal) ; => nil

; getint
;< seven
;< 7
(getint "Count: ") ; => 7

; getstring
;< 50-W-101
(getstring "Tag: ") ; => "50-W-101"
;< two words
(getstring t "Remark: ") ; => "two words"
;<
(getstring) ; => ""

; getkword
(initget "Yes No")
;< y
(getkword "Really [Yes/No]? ") ; => "Yes"
(initget "Yes No")
;<
(getkword "Really [Yes/No]? ") ; => nil

; entsel
(command "_.line" '(0.0 0.0) '(10.0 0.0) "")
;< 5,0
(entsel "Pipe: ") ; => (<Entity name: ...> (5.0 0.0 0.0))
;< 50,50
(entsel) ; => nil
(getvar "ERRNO") ; => 7

; nentsel
(command "_.line" '(0.0 0.0) '(10.0 0.0) "")
(command "_.block" "PIPE" '(0.0 0.0) "_l" "")
(command "_.insert" "PIPE" '(100.0 0.0) 1 1 0)
;< 105,0
(setq picked (nentsel "Part: "))
(cdr (assoc 0 (entget (car picked)))) ; => "LINE"
(cadr picked) ; => (105.0 0.0 0.0)
(caddr picked) ; => ((1.0 0.0 0.0) (0.0 1.0 0.0) (0.0 0.0 1.0) (100.0 0.0 0.0))
(cdr (assoc 0 (entget (car (last picked))))) ; => "INSERT"

; nentselp
(command "_.line" '(0.0 0.0) '(10.0 0.0) "")
(nentselp '(5.0 0.0)) ; => (<Entity name: ...> (5.0 0.0 0.0))
(nentselp '(5.0 50.0)) ; => nil

; command
(command "_.circle" '(5.0 5.0) 2.5) ; => nil
(cdr (assoc 40 (entget (entlast)))) ; => 2.5
(command "_.line" '(0.0 0.0) "@10,0" "@10<90" "") ; => nil
(cdr (assoc 11 (entget (entlast)))) ; => (10.0 10.0 0.0)
;< 7,8
(command "_.circle" pause 1.0) ; => nil
(cdr (assoc 10 (entget (entlast)))) ; => (7.0 8.0 0.0)

; command-s
(command-s "_.circle" '(5.0 5.0) 2.5) ; => nil
(command-s "_.circle" '(9.0 9.0)) ; => nil
(sslength (ssget "_X")) ; => 1

; vl-cmdf
(vl-cmdf "_.LINE" '(0 0) '(5 5) "") ; => T

; getcname
(getcname "LINE") ; => "_LINE"
(getcname "_LINE") ; => "LINE"
(getcname "NOSUCH") ; => nil

; initcommandversion
(initcommandversion 2) ; => nil
