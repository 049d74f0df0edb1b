;; Examples of what tells about values and symbols.

; type
(mapcar 'type (list 1 1.0 "1" 'a '(1) car nil)) ; => (INT REAL STR SYM LIST SUBR nil)
(defun mine () 1)
(type mine) ; => USUBR
(list (type (entlast)) (type (ssadd))) ; => (nil PICKSET)

; set
(set 'a 5) ; => 5
a ; => 5
(setq name (read (strcat "PUMP" (itoa 7))))
(set name "P-7") ; => "P-7"
pump7 ; => "P-7"
(set "a" 1) ; error: bad argument type: symbolp "a"

; atom
(atom 'a) ; => T
(atom '(a)) ; => nil
(atom nil) ; => T

; listp
(listp '(1 2)) ; => T
(listp '(1 . 2)) ; => T
(listp nil) ; => T
(listp "list") ; => nil

; vl-consp
(vl-consp '(1 . 2)) ; => T
(vl-consp nil) ; => nil

; null
(null '()) ; => T
(null 0) ; => nil

; not
(not nil) ; => T
(not 1) ; => nil

; boundp
(setq a 1 b nil)
(list (boundp 'a) (boundp 'b) (boundp 'never-set)) ; => (T nil nil)

; vl-symbolp
(vl-symbolp 'a) ; => T
(vl-symbolp t) ; => T
(vl-symbolp "a") ; => nil

; vl-symbol-name
(vl-symbol-name 'layer) ; => "LAYER"

; vl-symbol-value
(setq a 12)
(vl-symbol-value 'a) ; => 12

; atoms-family
(setq a 1)
(atoms-family 1 '("CAR" "A" "NEVER-SET")) ; => ("CAR" "A" nil)
(> (length (atoms-family 0)) 200) ; => T
