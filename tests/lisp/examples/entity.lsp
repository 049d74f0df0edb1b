;; Examples of making, reading and changing entities.

; entget
(setq line (entmakex '((0 . "LINE") (8 . "PIPES") (10 0.0 0.0 0.0) (11 5.0 0.0 0.0))))
(cdr (assoc 8 (entget line))) ; => "PIPES"
(assoc 11 (entget line)) ; => (11 5.0 0.0 0.0)
(regapp "PLANT")
(entmod (list (cons -1 line) '(-3 ("PLANT" (1000 . "50-W-101")))))
(assoc -3 (entget line '("PLANT"))) ; => (-3 ("PLANT" (1000 . "50-W-101")))
(assoc -3 (entget line)) ; => nil
(entget nil) ; error: bad argument type: lentityp nil

; entmod
(setq circle (entmakex '((0 . "CIRCLE") (10 0.0 0.0 0.0) (40 . 2.5))))
(setq groups (entget circle))
(setq groups (subst '(40 . 4.0) (assoc 40 groups) groups))
(cdr (assoc 40 (entmod groups))) ; => 4.0
(cdr (assoc 40 (entget circle))) ; => 4.0
(entmod (list (cons -1 circle) '(0 . "LINE"))) ; => nil

; entmake
(entmake '((0 . "POINT") (10 1.0 2.0 0.0))) ; => ((0 . "POINT") (10 1.0 2.0 0.0))
(cdr (assoc 0 (entget (entlast)))) ; => "POINT"
(entmake '((0 . "CIRCLE") (10 1.0 2.0 0.0))) ; => nil
(entmake '((0 . "BLOCK") (2 . "VALVE") (70 . 0) (10 0.0 0.0 0.0)))
(entmake '((0 . "CIRCLE") (10 0.0 0.0 0.0) (40 . 1.0)))
(entmake '((0 . "ENDBLK"))) ; => "VALVE"

; entmakex
(entmakex '((0 . "POINT") (10 1.0 2.0 0.0))) ; => <Entity name: ...>
(entmakex '((0 . "NOTHING"))) ; => nil
(setq record (entmakex '((0 . "XRECORD") (100 . "AcDbXrecord") (1 . "50-W-101"))))
(dictadd (namedobjdict) "TAG" record)
(assoc 1 (dictsearch (namedobjdict) "TAG")) ; => (1 . "50-W-101")

; entdel
(setq point (entmakex '((0 . "POINT") (10 1.0 2.0 0.0))))
(entdel point) ; => <Entity name: ...>
(entget point) ; => nil
(entdel point) ; => <Entity name: ...>
(cdr (assoc 10 (entget point))) ; => (1.0 2.0 0.0)

; entnext
(setq first (entmakex '((0 . "POINT") (10 1.0 0.0 0.0))))
(setq second (entmakex '((0 . "POINT") (10 2.0 0.0 0.0))))
(equal (entnext) first) ; => T
(equal (entnext first) second) ; => T
(entnext second) ; => nil

; entlast
(entlast) ; => nil
(command "_.circle" '(0.0 0.0) 2.0)
(cdr (assoc 0 (entget (entlast)))) ; => "CIRCLE"

; handent
(setq point (entmakex '((0 . "POINT") (10 1.0 2.0 0.0))))
(setq handle (cdr (assoc 5 (entget point))))
(equal (handent handle) point) ; => T
(handent "FFFFF") ; => nil

; redraw
(setq point (entmakex '((0 . "POINT") (10 1.0 2.0 0.0))))
(redraw point 3) ; => nil
(redraw) ; => nil

; entupd
(setq point (entmakex '((0 . "POINT") (10 1.0 2.0 0.0))))
(equal (entupd point) point) ; => T

; regapp
(regapp "PLANT") ; => "PLANT"
(regapp "PLANT") ; => nil

; xdsize
(regapp "PLANT")
(xdsize '((-3 ("PLANT" (1000 . "P-101") (1070 . 5))))) ; => 27
(xdsize '(("PLANT" (1000 . "P-101")))) ; => 24

; xdroom
(setq e (entmakex '((0 . "POINT") (10 0.0 0.0 0.0))))
(xdroom e) ; => 16383
