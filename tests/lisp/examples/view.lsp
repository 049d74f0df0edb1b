;; Examples of views.

; vports
(vports) ; => ((2 (0.0 0.0) (1.0 1.0)))

; setview
(command "_.ZOOM" "_W" '(0 0) '(10 10))
(command "_.VIEW" "_S" "detail")
(command "_.ZOOM" "_W" '(0 0) '(1000 1000))
(setview (tblsearch "VIEW" "detail")) ; => ((0 . "VIEW") (2 . "detail") ...)
(getvar "VIEWSIZE") ; => 10.0
(setview '((2 . "nowhere"))) ; => nil
