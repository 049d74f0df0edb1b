;; Examples of points and directions.

; distance
(distance '(0.0 0.0) '(3.0 4.0)) ; => 5.0
(distance '(0 0 0) '(2 3 6)) ; => 7.0
(distance '(0 0) '(0 0 5)) ; => 0.0
(distance '(0 0) 5) ; error: bad argument type: 2D/3D point

; angle
(angle '(1.0 1.0) '(1.0 4.0)) ; => 1.5708
(angle '(5.0 1.33) '(2.4 1.33)) ; => 3.14159

; polar
(polar '(1.0 1.0) (/ pi 2) 3.0) ; => (1.0 4.0)
(polar '(1.0 1.0 5.0) 0 2) ; => (3.0 1.0 5.0)

; trans
(command "_.ucs" "_o" '(10.0 20.0))
(trans '(1.0 1.0 0.0) 1 0) ; => (11.0 21.0 0.0)
(trans '(1.0 1.0 0.0) 1 0 t) ; => (1.0 1.0 0.0)
(trans '(0.0 0.0 0.0) 0 1) ; => (-10.0 -20.0 0.0)

; osnap
(command "_.line" '(0.0 0.0) '(10.0 0.0) "")
(osnap '(9.9 0.0) "_end") ; => (10.0 0.0 0.0)
(osnap '(4.0 0.0) "_mid,_end") ; => (5.0 0.0 0.0)
(osnap '(5.0 50.0) "_end") ; => nil

; inters
(inters '(1.0 1.0) '(9.0 9.0) '(4.0 1.0) '(4.0 2.0)) ; => nil
(inters '(1.0 1.0) '(9.0 9.0) '(4.0 1.0) '(4.0 2.0) nil) ; => (4.0 4.0)
(inters '(0 0 0) '(10 0 0) '(5 -1 1) '(5 1 1)) ; => nil

; cvunit
(cvunit 1 "minute" "second") ; => 60.0
(cvunit '(1.0 2.5) "ft" "in") ; => (12.0 30.0)
(cvunit 100 "celsius" "fahrenheit") ; => 212.0
(cvunit 1 "kg/m^3" "lb/cu ft") ; => 0.062428
(cvunit 1 "gallon" "furlong") ; => nil

; textbox
(textbox '((1 . "DN 50") (40 . 2.5))) ; => ((0.0 0.0 0.0) (10.0 2.5 0.0))
(textbox '((40 . 2.5))) ; => nil
