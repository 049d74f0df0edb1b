;;; Makes the example drawing from nothing: kz run -s examples/pump_station.dxf examples/make_pump_station.lsp
;;; A suction tank, two pumps with tags, and the pipes between them.

(defun layer (name colour)
  (entmake (list '(0 . "LAYER") '(100 . "AcDbSymbolTableRecord") '(100 . "AcDbLayerTableRecord")
                 (cons 2 name) '(70 . 0) (cons 62 colour) '(6 . "Continuous"))))

(defun pipe (from to)
  (entmake (list '(0 . "LINE") '(8 . "PIPE") (cons 10 from) (cons 11 to))))

(defun pump (tag at)
  (entmake (list '(0 . "INSERT") '(8 . "EQUIPMENT") '(66 . 1) '(2 . "PUMP") (cons 10 at)))
  (entmake (list '(0 . "ATTRIB") '(8 . "EQUIPMENT") (list 10 (car at) (+ (cadr at) 1.5) 0.0)
                 '(40 . 0.5) (cons 1 tag) '(2 . "TAG") '(70 . 0)))
  (entmake '((0 . "SEQEND"))))

(layer "PIPE" 3)
(layer "EQUIPMENT" 5)

(entmake '((0 . "BLOCK") (2 . "PUMP") (70 . 2) (10 0.0 0.0 0.0)))
(entmake '((0 . "CIRCLE") (8 . "0") (10 0.0 0.0 0.0) (40 . 1.0)))
(entmake '((0 . "LINE") (8 . "0") (10 0.0 1.0 0.0) (11 1.0 0.0 0.0)))
(entmake '((0 . "LINE") (8 . "0") (10 0.0 -1.0 0.0) (11 1.0 0.0 0.0)))
(entmake '((0 . "ATTDEF") (8 . "0") (10 0.0 1.5 0.0) (40 . 0.5) (1 . "") (2 . "TAG")
           (3 . "Tag of the pump") (70 . 0)))
(entmake '((0 . "ENDBLK")))

(entmake '((0 . "LWPOLYLINE") (100 . "AcDbEntity") (8 . "EQUIPMENT") (100 . "AcDbPolyline") (90 . 4)
           (70 . 1) (10 -10.0 -3.0) (10 -5.0 -3.0) (10 -5.0 3.0) (10 -10.0 3.0)))
(entmake '((0 . "TEXT") (8 . "EQUIPMENT") (10 -9.0 0.0 0.0) (40 . 0.7) (1 . "T-100")))
(pump "P-101" '(0.0 2.0 0.0))
(pump "P-102" '(0.0 -2.0 0.0))
(pipe '(-5.0 2.0 0.0) '(-1.0 2.0 0.0))
(pipe '(-5.0 -2.0 0.0) '(-1.0 -2.0 0.0))
(pipe '(1.0 2.0 0.0) '(6.0 2.0 0.0))
(pipe '(1.0 -2.0 0.0) '(6.0 -2.0 0.0))
(pipe '(6.0 -2.0 0.0) '(6.0 2.0 0.0))
(pipe '(6.0 0.0 0.0) '(12.0 0.0 0.0))
(princ)
