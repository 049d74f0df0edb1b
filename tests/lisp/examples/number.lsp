;; Examples of arithmetic, comparison and bits.

; +
(+ 1 2 3) ; => 6
(+ 1 2.5) ; => 3.5
(+) ; => 0
(+ 2147483646 3) ; => -2147483647
(+ 1 "2") ; error: bad argument type: numberp: "2"

; -
(- 50 40.0 2.5) ; => 7.5
(- 8) ; => -8

; *
(* 2 3 4.0) ; => 24.0
(* 7) ; => 7

; /
(/ 7 2) ; => 3
(/ 7 2.0) ; => 3.5
(/ 100 2 5) ; => 10
(/ 1 0) ; error: divide by zero

; rem
(rem 42 12) ; => 6
(rem -7 3) ; => -1
(rem 5.5 2) ; => 1.5

; max
(max 4.07 -144 9) ; => 9.0
(max 88 19 5) ; => 88

; min
(min 683 -10.0 5) ; => -10.0
(min 3 1 2) ; => 1

; 1+
(1+ 5) ; => 6
(1+ -17.5) ; => -16.5

; 1-
(1- 5) ; => 4

; abs
(abs -99.25) ; => 99.25
(abs 100) ; => 100

; fix
(fix 3.99) ; => 3
(fix -3.99) ; => -3
(fix 1e10) ; => 1.0e+10

; float
(float 3) ; => 3.0

; exp
(exp 1.0) ; => 2.71828
(exp 0) ; => 1.0

; expt
(expt 2 10) ; => 1024
(expt 2.0 0.5) ; => 1.41421

; log
(log (exp 2)) ; => 2.0
(log 0) ; error: function undefined for argument: 0

; sqrt
(sqrt 16) ; => 4.0
(sqrt -1) ; error: function undefined for argument: -1

; sin
(sin (/ pi 6)) ; => 0.5
(sin 0) ; => 0.0

; cos
(cos 0.0) ; => 1.0
(cos pi) ; => -1.0

; atan
(atan 1) ; => 0.785398
(atan 2.0 -3.0) ; => 2.55359
(atan 1 0) ; => 1.5708

; gcd
(gcd 81 57) ; => 3

; =
(= 4 4.0) ; => T
(= "pump" "pump") ; => T
(= 1 "1") ; => nil
(= 3 3 4) ; => nil

; /=
(/= 10 20) ; => T
(/= "a" "a") ; => nil
(/= 10 20 10 20) ; => T

; <
(< 1 2 3) ; => T
(< "a" "b") ; => T
(< 2 2) ; => nil

; >
(> 120 17) ; => T
(> 4 3 3) ; => nil

; <=
(<= 2 9 9) ; => T
(<= 10 9) ; => nil

; >=
(>= 9 9 2) ; => T

; eq
(setq a '(1 2) b '(1 2) c a)
(eq a c) ; => T
(eq a b) ; => nil
(eq 5 5) ; => T

; equal
(equal '(1 2) '(1 2)) ; => T
(equal 1 1.0) ; => T
(equal '(0.0 1.0) '(0.0 1.001) 0.01) ; => T
(equal 1.0 1.001) ; => nil

; zerop
(zerop 0.0) ; => T
(zerop 1) ; => nil

; minusp
(minusp -0.5) ; => T
(minusp 0) ; => nil

; numberp
(numberp 1.5) ; => T
(numberp "1.5") ; => nil

; logand
(logand 7 15 3) ; => 3
(logand 8 3) ; => 0

; logior
(logior 1 2 4) ; => 7

; ~
(~ 3) ; => -4

; lsh
(lsh 1 4) ; => 16
(lsh 16 -2) ; => 4

; boole
(boole 1 12 5) ; => 4
(boole 6 12 5) ; => 9
(boole 7 12 5) ; => 13
