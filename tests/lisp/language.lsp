;;; Evaluation: scope, functions, control, errors.

(is "an unbound symbol is nil" nil 'never-bound)
(is "setq gives the last value" 2 '(setq a 1 b 2))
(is "setq of nothing" nil '(setq))
(fails "setq wants pairs" "too few arguments" '(setq a))
(fails "setq wants symbols" "bad argument type: symbolp 1" '(setq 1 2))
(is "function and variable share a cell" "bad function: 7"
    '(progn (defun cell () 1) (setq cell 7)
            (vl-catch-all-error-message (vl-catch-all-apply 'cell '()))))

;; Functions.
(is "defun gives the symbol" 'twice '(defun twice (x) (* 2 x)))
(is "a call" 42 '(twice 21))
(fails "too few for a user function" "too few arguments" '(twice))
(fails "too many for a user function" "too many arguments" '(twice 1 2))
(fails "too few for a builtin" "too few arguments" '(cons 1))
(fails "too many for a builtin" "too many arguments" '(car nil nil))
(fails "unknown function" "no function definition: NO-SUCH" '(no-such 1))
(fails "a number is no function" "bad function: 1" '(1 2))
(is "commands are functions too" 5 '(progn (defun c:five () 5) (c:five)))
(is "locals start as nil and hide the outer value" '(nil 1)
    '(progn (setq v 1) (defun hide (/ v w) (setq w v v 2) w) (list (hide) v)))
(is "callees see the caller's variables" 3
    '(progn (defun reads () hidden) (defun binds (hidden) (reads)) (binds 3)))
(is "of two parameters with one name the first counts" 1
    '(progn (defun doubled (p p) p) (doubled 1 2)))
(is "bindings are restored after an error" 1
    '(progn (setq v 1) (defun breaks (v) (car v)) (vl-catch-all-apply 'breaks '(5)) v))
(is "lambda in the place of a function" 7 '((lambda (x / y) (setq y 3) (+ x y)) 4))
(is "lambda is no closure" nil
    '(progn (defun make (n) (lambda () n)) ((make 5))))
(is "a function as a quoted list" '(2 4) '(mapcar '(lambda (x) (* 2 x)) '(1 2)))
(is "defun-q leaves a list" '((x) (* 3 x)) '(progn (defun-q thrice (x) (* 3 x)) thrice))
(is "and it can be called" 9 '(thrice 3))
(is "a function may redefine itself while it runs" '(1 2)
    '(progn (defun once () (defun once () 2) 1) (list (once) (once))))
(is "arguments are evaluated before they are counted" 8
    '(progn (setq seen 0) (vl-catch-all-apply '(lambda () (car (setq seen 8) 1))) seen))

;; Control.
(is "if without else" nil '(if nil 1))
(fails "if takes two branches" "too many arguments" '(if t 1 2 3))
(is "cond gives the value of the test alone" 5 '(cond (nil 1) (5)))
(is "cond without a match" nil '(cond (nil 1)))
(is "and gives T" 't '(and 1 2))
(is "and of nothing" 't '(and))
(is "or gives T" 't '(or nil 2))
(is "or of nothing" nil '(or))
(is "while gives its last value" 0 '(progn (setq n 3) (while (> n 0) (setq n (1- n)))))
(is "repeat gives its last value" 6 '(progn (setq n 0) (repeat 3 (setq n (+ n 2)))))
(is "repeat of nothing" nil '(repeat 0 1))
(fails "repeat wants an integer" "bad argument type: fixnump: 2.0" '(repeat 2.0))
(is "foreach restores its variable" '(3 outer)
    '(progn (setq each 'outer) (list (foreach each '(1 2 3) each) each)))
(is "foreach over nothing" nil '(foreach x nil 1))
(fails "foreach wants a list" "bad argument type: listp 5" '(foreach x 5 1))
(is "apply" 6 '(apply '+ '(1 2 3)))
(is "apply of a special form" nil '(apply 'and '(t nil)))
(is "apply of a special form quotes its operands" 't '(apply 'and '(no-value (no-call))))
(is "mapcar stops at the shortest list" '(5 7) '(mapcar '+ '(1 2 3) '(4 5)))
(is "eval twice" 3 '(progn (setq form '(+ 1 2)) (eval form)))

;; Errors.
(is "catching gives an error object" 't
    '(vl-catch-all-error-p (vl-catch-all-apply 'car '(1))))
(is "catching gives the value" 3 '(vl-catch-all-apply '+ '(1 2)))
(is "catching without a list" 4 '(vl-catch-all-apply '(lambda () 4)))
(is "error objects print so" "#<%catch-all-apply-error%>"
    '(vl-princ-to-string (vl-catch-all-apply 'car '(1))))
(fails "exit is an error" "quit / exit abort" '(exit))
(fails "endless recursion ends in an error" "internal stack limit reached"
       '(progn (defun down (n) (1+ (down n))) (down 1)))
(is "recursion may go deep" 1000
    '(progn (defun depth (n) (if (= n 0) 0 (1+ (depth (1- n))))) (depth 1000)))
(is "the error function is not called inside of a catch" nil
    '(progn (setq called nil)
            (vl-catch-all-apply
              '(lambda (/ *error*) (defun *error* (m) (setq called m)) (car 1)))
            called))

;; Types.
(is "types" '(nil INT REAL STR SYM SYM LIST LIST SUBR SUBR USUBR)
    '(mapcar 'type (list nil 1 1.0 "" 'a 't '(1) '(1 . 2) car if twice)))
(is "a symbol is bound when its value is not nil" '(nil t)
    '(progn (setq bound-one 1) (list (boundp 'bound-none) (boundp 'bound-one))))
(is "names of symbols are upper case" "AB-C" '(vl-symbol-name 'aB-c))
(finish)
