;; Examples of texts.

; strcat
(strcat "50" "-" "W") ; => "50-W"
(strcat) ; => ""
(strcat "P-" 101) ; error: bad argument type: stringp 101

; strlen
(strlen "pipe") ; => 4
(strlen "a" "bc" "") ; => 3

; substr
(substr "50-W-101" 4) ; => "W-101"
(substr "50-W-101" 1 2) ; => "50"
(substr "short" 9) ; => ""

; strcase
(strcase "Pump 1") ; => "PUMP 1"
(strcase "Pump 1" t) ; => "pump 1"

; ascii
(ascii "A") ; => 65
(ascii "") ; => 0

; chr
(chr 65) ; => "A"
(strcat "a" (chr 9) "b") ; => "a\tb"

; wcmatch
(wcmatch "PIPE-50" "PIPE*") ; => T
(wcmatch "PIPE-50" "*-##") ; => T
(wcmatch "valve" "~pipe*,pump*") ; => T
(wcmatch "Pipe" "pipe") ; => nil

; vl-string-search
(vl-string-search "-" "50-W-101") ; => 2
(vl-string-search "-" "50-W-101" 3) ; => 4
(vl-string-search "x" "50-W-101") ; => nil

; vl-string-position
(vl-string-position (ascii "-") "50-W-101") ; => 2
(vl-string-position (ascii "-") "50-W-101" 0 t) ; => 4

; vl-string-elt
(vl-string-elt "ABC" 1) ; => 66
(vl-string-elt "ABC" 3) ; error: bad argument value: 3

; vl-string-left-trim
(vl-string-left-trim "0" "000150") ; => "150"

; vl-string-right-trim
(vl-string-right-trim " \t" "tag \t ") ; => "tag"

; vl-string-trim
(vl-string-trim " *" "** tag **") ; => "tag"

; vl-string-subst
(vl-string-subst "W" "O" "50-O-101") ; => "50-W-101"
(vl-string-subst "x" "a" "aaa") ; => "xaa"
(vl-string-subst "x" "a" "aaa" 1) ; => "axa"

; vl-string-translate
(vl-string-translate ",;" ".." "1,5;2") ; => "1.5.2"

; vl-string-mismatch
(vl-string-mismatch "pipe-50" "pipe-80") ; => 5
(vl-string-mismatch "PIPE" "pipe" 0 0 t) ; => 4

; vl-string->list
(vl-string->list "A1") ; => (65 49)

; vl-list->string
(vl-list->string '(80 45 55)) ; => "P-7"
