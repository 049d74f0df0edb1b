;; Examples of building lists and reaching into them.

; car
(car '(a b c)) ; => A
(car '((10 1.0) 8)) ; => (10 1.0)
(car nil) ; => nil
(car 5) ; error: bad argument type: consp 5

; cdr
(cdr '(a b c)) ; => (B C)
(cdr '(8 . "PIPES")) ; => "PIPES"
(cdr '(a)) ; => nil

; caar
(caar '((1 2) 3)) ; => 1

; cadr
(cadr '(1.0 2.0 3.0)) ; => 2.0
(cadr '(1)) ; => nil

; cdar
(cdar '((1 2 3) 4)) ; => (2 3)
(cdar '((8 . "PIPES") 4)) ; => "PIPES"

; cddr
(cddr '(1 2 3 4)) ; => (3 4)

; caaar
(caaar '(((1 2) 3) 4)) ; => 1

; caadr
(caadr '(1 (2 3))) ; => 2

; cadar
(cadar '((1 2 3) 4)) ; => 2

; caddr
(caddr '(1.0 2.0 3.0)) ; => 3.0
(caddr '(1.0 2.0)) ; => nil

; cdaar
(cdaar '(((1 2) 3) 4)) ; => (2)

; cdadr
(cdadr '(1 (2 3 4))) ; => (3 4)
(cdadr '((0 . "LINE") (8 . "PIPES"))) ; => "PIPES"

; cddar
(cddar '((1 2 3 4) 5)) ; => (3 4)

; cdddr
(cdddr '(1 2 3 4 5)) ; => (4 5)

; caaaar
(caaaar '((((1) 2) 3) 4)) ; => 1

; caaadr
(caaadr '(1 ((2 3) 4))) ; => 2

; caadar
(caadar '((1 (2 3)) 4)) ; => 2

; caaddr
(caaddr '(1 2 (3 4))) ; => 3

; cadaar
(cadaar '(((1 2) 3) 4)) ; => 2

; cadadr
(cadadr '(1 (2 3))) ; => 3

; caddar
(caddar '((1 2 3) 4)) ; => 3

; cadddr
(cadddr '(1 2 3 4)) ; => 4

; cdaaar
(cdaaar '((((1 2) 3) 4) 5)) ; => (2)

; cdaadr
(cdaadr '(1 ((2 3) 4))) ; => (3)

; cdadar
(cdadar '((1 (2 3)) 4)) ; => (3)

; cdaddr
(cdaddr '(1 2 (3 4))) ; => (4)

; cddaar
(cddaar '(((1 2 3) 4) 5)) ; => (3)

; cddadr
(cddadr '(1 (2 3 4))) ; => (4)

; cdddar
(cdddar '((1 2 3 4) 5)) ; => (4)

; cddddr
(cddddr '(1 2 3 4 5 6)) ; => (5 6)

; cons
(cons 1 '(2 3)) ; => (1 2 3)
(cons 8 "PIPES") ; => (8 . "PIPES")
(cons '(a) nil) ; => ((A))

; list
(list 1 "two" (+ 1 2)) ; => (1 "two" 3)
(list 1.0 (list 2 nil)) ; => (1.0 (2 nil))
(list) ; => nil

; vl-list*
(vl-list* 1 2 '(3 4)) ; => (1 2 3 4)
(vl-list* 10 1.0 2.0) ; => (10 1.0 . 2.0)

; append
(append '(1 2) '(3) nil '(4 5)) ; => (1 2 3 4 5)
(append '(1) 2) ; => (1 . 2)
(append) ; => nil

; reverse
(reverse '(1 2 (3 4))) ; => ((3 4) 2 1)

; length
(length '(a b (c d))) ; => 3
(length nil) ; => 0
(length '(1 . 2)) ; error: bad argument type: listp (1 . 2)

; vl-list-length
(vl-list-length '(1 2)) ; => 2
(vl-list-length '(1 . 2)) ; => nil

; last
(last '(1 2 3)) ; => 3
(last nil) ; => nil

; nth
(nth 0 '(a b c)) ; => A
(nth 2 '(a b c)) ; => C
(nth 3 '(a b c)) ; => nil

; member
(member 'c '(a b c d)) ; => (C D)
(member "x" '("a" "b")) ; => nil

; assoc
(setq groups '((0 . "LINE") (8 . "PIPES") (10 1.0 2.0 0.0)))
(assoc 8 groups) ; => (8 . "PIPES")
(cdr (assoc 10 groups)) ; => (1.0 2.0 0.0)
(assoc 62 groups) ; => nil

; subst
(setq groups '((0 . "LINE") (8 . "PIPES")))
(subst '(8 . "STEEL") (assoc 8 groups) groups) ; => ((0 . "LINE") (8 . "STEEL"))
(subst 'x 'b '(a (b) b)) ; => (A (B) X)
