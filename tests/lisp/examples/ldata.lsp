;; Examples of Lisp data in drawings.

; vlax-ldata-put
(vlax-ldata-put "PLANT" "areas" '("A1" 2 (3.5 . nil) (a . "b") (1 2 . 3))) ; => ("A1" 2 (3.5) (A . "b") (1 2 . 3))
(vlax-ldata-get "plant" "AREAS") ; => ("A1" 2 (3.5) (A . "b") (1 2 . 3))
(setq line (entmakex '((0 . "LINE") (10 0.0 0.0 0.0) (11 1.0 0.0 0.0))))
(vlax-ldata-put line "pump" (list line nil)) ; => (<Entity name: ...> nil)
(equal (list line nil) (vlax-ldata-get line "pump")) ; => T
(vlax-ldata-put "PLANT" "file" (open "x.txt" "w")) ; error: bad argument value: #<file "x.txt">

; vlax-ldata-get
(vlax-ldata-put "PLANT" "unit" "mm")
(vlax-ldata-get "PLANT" "unit") ; => "mm"
(vlax-ldata-get "PLANT" "area" 7) ; => 7
(vlax-ldata-get "OTHER" "unit") ; => nil

; vlax-ldata-delete
(vlax-ldata-put "PLANT" "unit" "mm")
(vlax-ldata-delete "PLANT" "unit") ; => T
(vlax-ldata-delete "PLANT" "unit") ; => nil

; vlax-ldata-list
(vlax-ldata-put "PLANT" "a" 1)
(vlax-ldata-put "PLANT" "b" "")
(vlax-ldata-put "PLANT" "a" 2)
(vlax-ldata-list "PLANT") ; => (("b" . "") ("a" . 2))
(vlax-ldata-list "OTHER") ; => nil

; vlax-ldata-test
(vlax-ldata-test '(1 "two" three)) ; => T
(vlax-ldata-test (ssadd)) ; => nil
