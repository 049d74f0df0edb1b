;; Examples of system variables.

; getvar
(getvar "CLAYER") ; => "0"
(getvar 'osmode) ; => 0
(getvar "NO_SUCH_VARIABLE") ; => nil

; setvar
(setvar "ORTHOMODE" 1) ; => 1
(getvar "ORTHOMODE") ; => 1
(setvar "ORTHOMODE" 7) ; error: ...variable setting rejected: "ORTHOMODE" 7
