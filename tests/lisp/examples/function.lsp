;; Examples of what handles functions and errors.

; eval
(setq form '(+ 1 2))
(eval form) ; => 3
(eval (list 'max 4 9)) ; => 9
(eval 'form) ; => (+ 1 2)

; apply
(apply '+ '(1 2 3 4)) ; => 10
(apply 'strcat (list "P-" (itoa 101))) ; => "P-101"
(apply (function (lambda (x y) (/ x y))) '(1.0 4)) ; => 0.25
(apply '1+ '(1 2)) ; error: too many arguments

; mapcar
(mapcar '+ '(1 2 3) '(10 20 30)) ; => (11 22 33)
(mapcar (function (lambda (p) (car p))) '((1.0 2.0) (3.0 4.0))) ; => (1.0 3.0)
(mapcar '- '(10 20 30) '(1 2)) ; => (9 18)
(mapcar 'list '(1 2) '("a" "b")) ; => ((1 "a") (2 "b"))

; exit
(defun check (n) (if (> n 5) (exit)) n)
(check 3) ; => 3
(check 9) ; error: quit / exit abort

; quit
(progn (quit) 1) ; error: quit / exit abort

; vl-catch-all-apply
(vl-catch-all-apply '/ '(12 4)) ; => 3
(vl-catch-all-apply '/ '(1 0)) ; => #<%catch-all-apply-error%>
(vl-catch-all-apply (function (lambda () (strcat "a" 1)))) ; => #<%catch-all-apply-error%>

; vl-catch-all-error-p
(setq result (vl-catch-all-apply 'car '(5)))
(vl-catch-all-error-p result) ; => T
(vl-catch-all-error-p 5) ; => nil

; vl-catch-all-error-message
(vl-catch-all-error-message (vl-catch-all-apply '/ '(1 0))) ; => "divide by zero"
(vl-catch-all-error-message (vl-catch-all-apply 'strlen '(5))) ; => "bad argument type: stringp 5"

; *push-error-using-stack*
(defun *error* (message) (princ (list message size)))
(defun work (/ size) (setq size 8) (car size))
(*push-error-using-stack*) ; => T
(work) ; error: bad argument type: consp 8

; *push-error-using-command*
(setq size "outside")
(defun *error* (message) (setq seen size))
(defun work (/ size) (setq size 8) (car size))
(*push-error-using-command*) ; => T
(work) ; error: bad argument type: consp 8
seen ; => "outside"

; *pop-error-mode*
(*push-error-using-command*) ; => T
(*pop-error-mode*) ; => T

; defun-q-list-ref
(defun-q start () (setq ready 1))
(defun-q-list-ref 'start) ; => (nil (SETQ READY 1))
(defun plain () 1)
(defun-q-list-ref 'plain) ; => nil

; defun-q-list-set
(defun-q-list-set 'twice '((x) (* 2 x))) ; => TWICE
(twice 21) ; => 42

; trace
(defun double (x) (* 2 x))
(trace double) ; => DOUBLE
(double 4) ; => 8

; untrace
(defun double (x) (* 2 x))
(untrace double) ; => DOUBLE
