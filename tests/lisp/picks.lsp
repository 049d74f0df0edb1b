;;; Picks at points, in blocks and attached drawings, and XREF around them.

(setvar "CMDECHO" 0)
;; The first file that the drawing is saved to is its own.
(setq file (vl-filename-mktemp "inner.dxf") own (vl-filename-mktemp "own.dxf"))
(setq id (kz_CADDwgId_create))
(kz_CADDwgId_saveAs id own)
(setq inner (entmakex '((0 . "CIRCLE") (8 . "0") (10 5.0 0.0 0.0) (40 . 2.0))))
(kz_CADDwgId_saveAs id file)
(kz_CADDwgId_destroy id)
(entdel inner)
(command "_.zoom" "_c" '(20 20) 100.0)

;; The drawing itself.
(setq line (make-line))
(is "a line" (list line '(0.5 0.0 0.0)) '(nentselp '(0.5 0.0)))
(is "nothing there" nil '(nentselp '(0.5 9.0)))
(is "the service's picks" line '(kz_CADObjId_getAtPoint '(0.5 0.0)))
(is "none there" nil '(kz_CADObjId_getAtPoint '(0.5 9.0)))
(is "wrong points" '(nil nil) '(list (kz_CADObjId_getAtPoint nil) (kz_CADObjId_getAtPoint "x")))
(fails "no answers" "Function cancelled" '(entsel "Pick: "))
(fails "none for this one either" "Function cancelled" '(nentsel))
(is "nor for the service" nil '(kz_CADObjId_select nil))
(fails "a point of one number" "bad argument type: point (1)" '(nentselp '(1)))

;; An attached drawing, turned by 90 degrees and twice as large: (x y) goes to (40 - 2y, 30 + 2x).
(command "_.xref" "_attach" (strcat "IN=" file) '(40 30) 2.0 "" 90.0)
(setq insert (entlast) pick (nentselp '(40.0 44.0)))
(is "the circle in it" "CIRCLE" '(cdr (assoc 0 (entget (car pick)))))
(is "its insertion" (list insert) '(cadddr pick))
(note-fact (equal (caddr pick) '((0.0 -2.0 0.0 40.0) (2.0 0.0 0.0 30.0) (0.0 0.0 2.0 0.0)
                                 (0.0 0.0 0.0 1.0)) 1e-9)
           "its matrix" "" (caddr pick))
(is "the service finds it, too" (car pick) '(kz_CADObjId_getAtPoint '(40.0 44.0)))
(setq id (kz_CADObjId_getDwgId (car pick)))
(is "in its drawing" file '(kz_CADDwgId_getName id))
(is "which is attached" T '(kz_CADDwgId_isAttached id))
(kz_CADDwgId_destroy id)
(is "the drawing of no entity" nil '(kz_CADObjId_getDwgId "x"))

;; Layers: what is on layer 0 inside goes by the layer of the insertion.
(command "_.layer" "_make" "HOLDER" "_set" "0" "")
(command "_.chprop" insert "" "_layer" "HOLDER" "")
(command "_.layer" "_freeze" "HOLDER" "")
(is "frozen" nil '(nentselp '(40.0 44.0)))
(command "_.layer" "_thaw" "HOLDER" "")
(is "thawed" T '(= (car pick) (car (nentselp '(40.0 44.0)))))

;; Options of the command.
(command "_.xref" "_unload" "in")
(is "unloaded" nil '(nentselp '(40.0 44.0)))
(command "_.xref" "_reload" "*")
(is "reloaded" "CIRCLE" '(cdr (assoc 0 (entget (car (nentselp '(40.0 44.0)))))))
(command "_.xref" "?" "")
(command "_.xref" "_path" "IN" "")
(command "_.xref" "_detach" "IN")
(is "detached" '(nil nil) '(list (entget insert) (tblsearch "BLOCK" "IN")))
(command "_.u")
(is "back" '("IN" 4) '(list (cdr (assoc 2 (entget insert)))
                            (logand 4 (cdr (assoc 70 (tblsearch "BLOCK" "IN"))))))
(vl-file-delete file)
(vl-file-delete own)

(finish)
