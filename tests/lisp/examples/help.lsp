;; Examples of what helps at the prompt.

; kz_help
(kz_help 'gcd) ; prints "...(gcd integer integer)\nGreatest common divisor.\n..." =>
(kz_help "strcta") ; prints "...nothing is known of strcta; near are: strcat\n" =>
(defun half (x / y) (setq y (/ x 2)))
(kz_help "half") ; prints "...(half x)\n" =>

; help
(help "suite.hlp" "gcd") ; prints "...Greatest common divisor.\n..." => "suite.hlp"
(help "suite.hlp" "pumps and valves") ; prints "...nothing is known of...\n" => nil

; vl-bt
(defun half (x) (/ x 2))
(half "9") ; error: bad argument type: numberp: "9"
(vl-bt) ; prints "...; 0: (/ X 2) in HALF\n; 1: (HALF \"9\")\n" =>

; vl-bt-on
(vl-bt-on) ; => T

; vl-bt-off
(vl-bt-off) ; => nil
