;; Examples of what prints.

; princ
(princ "two words") ; prints "two words" => "two words"
(princ '(1 "two")) ; prints "(1 two)" => (1 "two")
(princ) ; =>

; prin1
(prin1 "two words") ; prints "\"two words\"" => "two words"
(prin1) ; =>

; print
(print "tag") ; prints "\n\"tag\" " => "tag"

; terpri
(terpri) ; prints "\n" => nil

; prompt
(prompt "\nReady.") ; => nil
(prompt 5) ; error: bad argument type: stringp 5

; write-line
(write-line "a line") ; prints "a line\n" => "a line"
(setq file (open "notes.txt" "w"))
(write-line "kept" file) ; => "kept"
(close file) ; => nil

; write-char
(write-char 65) ; prints "A" => 65
