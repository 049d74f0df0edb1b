;; Examples of numbers, angles and values as texts.

; itoa
(itoa 33) ; => "33"
(itoa 1.0) ; error: bad argument type: fixnump: 1.0

; atoi
(atoi "97.4") ; => 97
(atoi " 12 mm") ; => 12
(atoi "none") ; => 0

; atof
(atof "97.1") ; => 97.1
(atof "1e3 mm") ; => 1000.0
(atof "none") ; => 0.0

; rtos
(rtos 17.5 1 4) ; => "1.7500E+01"
(rtos 17.5 2 2) ; => "17.50"
(rtos 17.5 3 2) ; => "1'-5.50\""
(rtos 17.5 4 2) ; => "1'-5 1/2\""
(rtos 17.5 5 2) ; => "17 1/2"
(rtos 17.5 9) ; => nil

; distof
(distof "17.5") ; => 17.5
(distof "1'-5 1/2\"" 4) ; => 17.5
(distof "none") ; => nil

; angtos
(angtos (/ pi 4) 0 2) ; => "45.00"
(angtos (/ pi 4) 1 4) ; => "45d0'0\""
(angtos (/ pi 4) 3 4) ; => "0.7854r"
(angtos (/ pi 4) 4 0) ; => "N 45d E"

; angtof
(angtof "45.0") ; => 0.785398
(angtof "100g" 2) ; => 1.5708
(angtof "none") ; => nil

; read
(read "(1 . \"a\")") ; => (1 . "a")
(read "pump 7") ; => PUMP
(read "") ; => nil
(read "(1 2") ; error: malformed list on input

; vl-princ-to-string
(vl-princ-to-string '(1 "two" 3.0)) ; => "(1 two 3.0)"

; vl-prin1-to-string
(vl-prin1-to-string '(1 "two" 3.0)) ; => "(1 \"two\" 3.0)"
(vl-prin1-to-string 'pump) ; => "PUMP"
