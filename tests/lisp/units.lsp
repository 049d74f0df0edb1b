;;; Numbers and angles as texts in the units of a drawing.

(defun all-modes (number precision) (mapcar '(lambda (mode) (rtos number mode precision)) '(1 2 3 4 5)))

;; A new drawing keeps zeros at the end of decimals.
(is "zeros at the end are left out" '(8 "17.5" "1'-5.5\"" "17 1/2") '(list (setvar "DIMZIN" 8) (rtos 17.5 2 4) (rtos 17.5 3 2) (rtos 17.5 5 2)))
(is "and stay" 0 '(setvar "DIMZIN" 0))
(is "each unit" '("1.7500E+01" "17.5000" "1'-5.5000\"" "1'-5 1/2\"" "17 1/2") '(all-modes 17.5 4))
(is "an integer is a distance" '("1.50E+01" "15.00" "1'-3.00\"" "1'-3\"" "15") '(all-modes 15 2))
(is "without units and precision those of the drawing count" '("1.5000" "1'-3 1/2\"" "1'-3 1/2\"" "1'-4\"")
    '(list (rtos 1.5) (progn (setvar "LUNITS" 4) (rtos 15.5)) (rtos 15.5 4) (progn (setvar "LUPREC" 0) (rtos 15.5))))
(is "back to decimals" '(2 4) '(list (setvar "LUNITS" 2) (setvar "LUPREC" 4)))
(is "as it is typed" '(1 "1'3-1/2\"" "17-1/2" "N45d0'E") '(list (setvar "UNITMODE" 1) (rtos 15.5 4 2) (rtos 17.5 5 2) (angtos (/ pi 4) 4 2)))
(is "as it is shown" '(0 "1'-3 1/2\"" "N 45d0' E") '(list (setvar "UNITMODE" 0) (rtos 15.5 4 2) (angtos (/ pi 4) 4 2)))
(is "unknown units" '(nil nil) '(list (rtos 1.0 9) (angtos 1.0 9)))
(fails "rtos wants a number" "bad argument type: numberp: \"1\"" '(rtos "1"))
(fails "units are an integer" "bad argument type: fixnump: 2.0" '(rtos 1.0 2.0))

(is "distof reads what rtos wrote" '(17.5 17.5 17.5 17.5 17.5)
    '(mapcar '(lambda (mode) (distof (rtos 17.5 mode 4) mode)) '(1 2 3 4 5)))
(is "distof in several spellings" '(15.5 15.5 6.0 0.75 nil nil)
    '(list (distof "1'-3 1/2\"" 4) (distof "1'3-1/2\"" 4) (distof "6\"") (distof "3/4") (distof "six") (distof "")))

(is "angles by unit" '("180" "180d0'0\"" "200.0000g" "3.1416r" "W")
    '(list (angtos pi 0 0) (angtos pi 1 4) (angtos pi 2 4) (angtos pi 3 4) (angtos pi 4 2)))
(is "negative angles are turned" "315.0000" '(angtos -0.785398163 0 4))
(is "angtof reads what angtos wrote" "(45.0 45.0 45.0 45.0 45.0)"
    '(vl-princ-to-string (mapcar '(lambda (mode) (* 180 (/ (angtof (angtos (/ pi 4) mode 8) mode) pi))) '(0 1 2 3 4))))
(is "marks win over units" "(0.785398 0.785398 0.5 1.0177)"
    '(vl-princ-to-string (list (angtof "45d" 3) (angtof "50g" 3) (angtof "0.5r" 0) (angtof "45.0000" 3))))
(is "no angle" nil '(angtof "north"))
(is "the base of angles" "90" '(progn (setvar "ANGBASE" (/ pi 2)) (angtos pi 0 0)))
(is "clockwise" "270" '(progn (setvar "ANGDIR" 1) (angtos pi 0 0)))
(setvar "ANGDIR" 0)
(setvar "ANGBASE" 0)
(finish)
