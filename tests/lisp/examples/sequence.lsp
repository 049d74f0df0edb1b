;; Examples of searching and sorting lists by functions.

; vl-remove
(vl-remove 2 '(1 2 3 2)) ; => (1 3)
(vl-remove "x" '("a" "b")) ; => ("a" "b")

; vl-remove-if
(vl-remove-if 'minusp '(1 -2 3)) ; => (1 3)
(vl-remove-if (function (lambda (e) (= (car e) 8))) '((0 . "LINE") (8 . "0"))) ; => ((0 . "LINE"))

; vl-remove-if-not
(vl-remove-if-not 'numberp '(1 "2" 3.0)) ; => (1 3.0)

; vl-member-if
(vl-member-if 'minusp '(1 -2 3)) ; => (-2 3)
(vl-member-if 'minusp '(1 2)) ; => nil

; vl-member-if-not
(vl-member-if-not 'numberp '(1 2 "a" 3)) ; => ("a" 3)

; vl-position
(vl-position "b" '("a" "b" "c")) ; => 1
(vl-position 9 '(1 2 3)) ; => nil

; vl-some
(vl-some 'minusp '(1 -2 3)) ; => T
(vl-some (function (lambda (a b) (if (= a b) a))) '(1 2 3) '(3 2 1)) ; => 2
(vl-some 'numberp nil) ; => nil

; vl-every
(vl-every 'numberp '(1 2.0 3)) ; => T
(vl-every '< '(1 2) '(2 2)) ; => nil
(vl-every 'numberp nil) ; => T

; vl-sort
(vl-sort '(3 2 1 3) '<) ; => (1 2 3)
(vl-sort '("b" "C" "a") '>) ; => ("b" "a" "C")
(vl-sort '((2 1.0) (1 3.0)) (function (lambda (a b) (< (car a) (car b))))) ; => ((1 3.0) (2 1.0))

; vl-sort-i
(vl-sort-i '("pipe" "bend" "valve") '<) ; => (1 0 2)

; acad_strlsort
(acad_strlsort '("valve" "Pump" "bend")) ; => ("bend" "Pump" "valve")
