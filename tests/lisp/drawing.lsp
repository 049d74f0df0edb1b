;;; Entities, tables, dictionaries and sets as Lisp sees them.

(defun group (code entity) (cdr (assoc code (entget entity))))
(setq line '((0 . "LINE") (8 . "PIPES") (10 1 2 3) (11 4.0 5.0 6.0)))

(is "an empty drawing has no entity" '(nil nil) '(list (entnext) (entlast)))
(is "entmake gives its list" line '(entmake line))
(setq e (entlast))
(is "names" '(ENAME t t) '(list (type e) (= (substr (vl-princ-to-string e) 1 14) "<Entity name: ") (equal e (group -1 e))))
(is "groups" '("LINE" "PIPES" (1.0 2.0 3.0)) '(list (group 0 e) (group 8 e) (group 10 e)))
(is "by its handle" 't '(equal e (handent (group 5 e))))
(is "no such handle" nil '(handent "FFFFFF"))
(is "a layer came with it" "PIPES" '(cdr (assoc 2 (tblsearch "layer" "pipes"))))
(is "entmod changes a group" 3 '(progn (entmod (append (entget e) '((62 . 3)))) (group 62 e)))
(fails "entget of nil" "bad argument type: lentityp nil" '(entget nil))
(fails "no group" "bad DXF group: (8 . 5)" '(entmod (list (cons -1 e) '(8 . 5))))
(fails "no pair" "bad DXF group: 7" '(entmake '(7)))
(is "a refused entity" nil '(entmake '((8 . "0"))))
(is "erased and back" '(nil "LINE") '(list (progn (entdel e) (entget e)) (progn (entdel e) (group 0 e))))

;; XDATA.
(is "regapp once" '("KZ_TEST" nil) '(list (regapp "KZ_TEST") (regapp "KZ_TEST")))
(setq data '(-3 ("KZ_TEST" (1000 . "text") (1002 . "{") (1040 . 1.5) (1070 . 7) (1071 . 70000) (1010 1.0 2.0 3.0) (1002 . "}"))))
(is "XDATA comes back as it was" data
    '(progn (entmod (list (cons -1 e) data)) (assoc -3 (entget e '("KZ_TEST")))))
(is "only when asked for" nil '(assoc -3 (entget e)))
(is "by wildcard" data '(assoc -3 (entget e '("KZ*"))))
(is "an application alone removes its data" nil
    '(progn (entmod (list (cons -1 e) '(-3 ("KZ_TEST")))) (assoc -3 (entget e '("*")))))

;; Flat vertices have two coordinates.
(setq p (entmakex '((0 . "LWPOLYLINE") (100 . "AcDbEntity") (100 . "AcDbPolyline") (90 . 2) (70 . 0) (10 0 0) (10 5 1))))
(is "entmakex gives the name" 'ENAME '(type p))
(is "vertices are flat" '(10 0.0 0.0) '(assoc 10 (entget p)))
(is "walking" '(t t nil) '(list (equal e (entnext)) (equal p (entnext e)) (entnext p)))

;; Dictionaries.
(setq d (namedobjdict))
(setq x (entmakex '((0 . "XRECORD") (100 . "AcDbXrecord") (1 . "note") (70 . 9))))
(is "an entry" '(t "note") '(list (equal x (dictadd d "KZ_NOTE" x)) (cdr (assoc 1 (dictsearch d "kz_note")))))
(is "renamed" "KZ_OTHER" '(dictrename d "KZ_NOTE" "KZ_OTHER"))
(is "removed" '(t nil) '(list (equal x (dictremove d "KZ_OTHER")) (dictsearch d "KZ_OTHER")))
(is "tables can be walked" "LAYER" '(cdr (assoc 0 (tblnext "LAYER" t))))

;; Selection sets.
(setq s (ssadd))
(is "sets" '(PICKSET 0 nil) '(list (type s) (sslength s) (ssname s 0)))
(is "adding changes the set itself" '(t 2) '(list (eq s (ssadd e s)) (progn (ssadd p s) (ssadd e s) (sslength s))))
(is "members in order" '(t t nil) '(list (equal e (ssname s 0)) (equal p (ssname s 1.0)) (ssname s 2)))
(is "membership" '(t nil) '(list (equal p (ssmemb p s)) (progn (ssdel p s) (ssmemb p s))))
(is "not a member" nil '(ssdel p s))
(fails "no set" "bad argument type: lselsetp nil" '(sslength nil))
(is "sets that are dropped are freed" 'PICKSET '(progn (repeat 1000 (setq s (ssadd e))) (type s)))

;; System variables.
(is "setvar gives the value" '(33 33) '(list (setvar "OSMODE" 33) (getvar 'osmode)))
(is "unknown variable" nil '(getvar "KZ_NO_SUCH"))
(fails "unfit value" "AutoCAD variable setting rejected: \"OSMODE\" \"x\"" '(setvar "OSMODE" "x"))
(finish)
