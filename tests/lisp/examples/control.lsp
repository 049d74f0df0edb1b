;; Examples of what controls the evaluation: branches, loops, definitions.

; quote
(quote (+ 1 2)) ; => (+ 1 2)
'(a "b" 3) ; => (A "b" 3)
''a ; => (QUOTE A)

; function
(mapcar (function 1+) '(1 2 3)) ; => (2 3 4)
(mapcar (function (lambda (x) (* x x))) '(1 2 3)) ; => (1 4 9)

; progn
(progn (setq a 2) (* a 3)) ; => 6
(progn) ; => nil

; if
(if (> 2 1) "yes" "no") ; => "yes"
(if nil 1) ; => nil
(if 0 "0 is not nil") ; => "0 is not nil"

; cond
(defun sign (x) (cond ((minusp x) -1) ((zerop x) 0) (t 1)))
(mapcar 'sign '(-7 0 2.5)) ; => (-1 0 1)
(cond ((assoc 2 '((1 . "a") (2 . "b"))))) ; => (2 . "b")
(cond (nil 1)) ; => nil

; and
(and 1 "a" '(2)) ; => T
(and 1 nil (exit)) ; => nil
(and) ; => T

; or
(or nil 5) ; => T
(or nil nil) ; => nil
(or) ; => nil

; while
(setq n 0)
(while (< n 5) (setq n (+ n 2))) ; => 6
(while nil 1) ; => nil

; repeat
(setq n 1)
(repeat 10 (setq n (* 2 n))) ; => 1024
(repeat 2.5 n) ; error: bad argument type: fixnump: 2.5

; foreach
(setq total 0)
(foreach part '(1.5 2.0 0.25) (setq total (+ total part))) ; => 3.75
(foreach name nil (print name)) ; => nil

; setq
(setq a 1 b (+ a 1)) ; => 2
(list a b) ; => (1 2)
(setq a) ; error: too few arguments

; defun
(defun area (width height / result) (setq result (* width height)) result) ; => AREA
(area 3 4) ; => 12
result ; => nil
(area 3) ; error: too few arguments

; defun-q
(defun-q start () (setq ready 1)) ; => START
(defun-q-list-set 'start (append start '((setq loaded 2)))) ; => START
(start) ; => 2
(list ready loaded) ; => (1 2)

; lambda
((lambda (x y) (- x y)) 7 3) ; => 4
(apply '(lambda (x) (list x x)) '("a")) ; => ("a" "a")
