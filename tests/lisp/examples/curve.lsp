;; Examples of curves.

; vlax-curve-getStartParam
(setq arc (entmakex (list '(0 . "ARC") '(10 0.0 0.0 0.0) '(40 . 10.0) (cons 50 (* 1.5 pi)) (cons 51 0.0))))
(rtos (vlax-curve-getStartParam arc) 2 4) ; => "4.7124"
(rtos (vlax-curve-getEndParam arc) 2 4) ; => "6.2832"
(vlax-curve-getStartParam (entmakex '((0 . "TEXT") (1 . "x") (10 0 0) (40 . 1)))) ; error: bad argument type: curvep <Entity name: ...>

; vlax-curve-getEndParam
(setq far (entmakex '((0 . "ARC") (10 0.0 0.0 0.0) (40 . 1.0) (50 . 1e20) (51 . 0.0))))
(< 0 (vlax-curve-getDistAtParam far (vlax-curve-getEndParam far)) 6.3) ; => T
(setq line (entmakex '((0 . "LINE") (10 0.0 0.0 0.0) (11 3.0 4.0 0.0))))
(vlax-curve-getEndParam line) ; => 5.0
(setq pipe (entmakex '((0 . "LWPOLYLINE") (100 . "AcDbEntity") (100 . "AcDbPolyline") (90 . 3) (70 . 0) (10 0 0) (42 . 0.0) (10 10 0) (42 . 1.0) (10 10 4) (42 . 0.0))))
(vlax-curve-getEndParam pipe) ; => 2.0

; vlax-curve-getStartPoint
(setq line (entmakex '((0 . "LINE") (10 1.0 2.0 3.0) (11 3.0 4.0 0.0))))
(vlax-curve-getStartPoint line) ; => (1.0 2.0 3.0)

; vlax-curve-getEndPoint
(setq line (entmakex '((0 . "LINE") (10 1.0 2.0 3.0) (11 3.0 4.0 0.0))))
(vlax-curve-getEndPoint line) ; => (3.0 4.0 0.0)

; vlax-curve-isClosed
(vlax-curve-isClosed (entmakex '((0 . "CIRCLE") (10 0 0) (40 . 1.0)))) ; => T
(vlax-curve-isClosed (entmakex '((0 . "LINE") (10 0 0) (11 1 0)))) ; => nil

; vlax-curve-getPointAtParam
(setq pipe (entmakex '((0 . "LWPOLYLINE") (100 . "AcDbEntity") (100 . "AcDbPolyline") (90 . 3) (70 . 0) (10 0 0) (42 . 0.0) (10 10 0) (42 . 1.0) (10 10 4) (42 . 0.0))))
(vlax-curve-getPointAtParam pipe 0.5) ; => (5.0 0.0 0.0)
(vlax-curve-getPointAtParam pipe 1.5) ; => (12.0 2.0 0.0)
(vlax-curve-getPointAtParam pipe 2.5) ; => nil

; vlax-curve-getDistAtParam
(setq pipe (entmakex '((0 . "LWPOLYLINE") (100 . "AcDbEntity") (100 . "AcDbPolyline") (90 . 3) (70 . 0) (10 0 0) (42 . 0.0) (10 10 0) (42 . 1.0) (10 10 4) (42 . 0.0))))
(rtos (vlax-curve-getDistAtParam pipe (vlax-curve-getEndParam pipe)) 2 6) ; => "16.283185"
(setq ellipse (entmakex (list '(0 . "ELLIPSE") '(100 . "AcDbEntity") '(100 . "AcDbEllipse") '(10 0.0 0.0 0.0) '(11 2.0 0.0 0.0) '(40 . 0.5) '(41 . 0.0) (cons 42 (* 2 pi)))))
(rtos (vlax-curve-getDistAtParam ellipse (vlax-curve-getEndParam ellipse)) 2 8) ; => "9.68844822"

; vlax-curve-getFirstDeriv
(setq line (entmakex '((0 . "LINE") (10 0.0 0.0 0.0) (11 3.0 4.0 0.0))))
(vlax-curve-getFirstDeriv line 2.5) ; => (0.6 0.8 0.0)

; vlax-curve-getParamAtDist
(setq circle (entmakex '((0 . "CIRCLE") (10 0 0) (40 . 2.0))))
(vlax-curve-getParamAtDist circle 3.0) ; => 1.5
(vlax-curve-getParamAtDist circle 13.0) ; => nil

; vlax-curve-getPointAtDist
(setq pipe (entmakex '((0 . "LINE") (10 0.0 0.0 0.0) (11 0.0 0.0 8.0))))
(vlax-curve-getPointAtDist pipe 2) ; => (0.0 0.0 2.0)
(vlax-curve-getPointAtDist pipe -1) ; => nil

; vlax-curve-getParamAtPoint
(setq pipe (entmakex '((0 . "LWPOLYLINE") (100 . "AcDbEntity") (100 . "AcDbPolyline") (90 . 3) (70 . 0) (10 0 0) (10 10 0) (10 10 4))))
(vlax-curve-getParamAtPoint pipe '(10 1)) ; => 1.25
(vlax-curve-getParamAtPoint pipe '(9 1)) ; => nil

; vlax-curve-getDistAtPoint
(setq pipe (entmakex '((0 . "LWPOLYLINE") (100 . "AcDbEntity") (100 . "AcDbPolyline") (90 . 3) (70 . 0) (10 0 0) (10 10 0) (10 10 4))))
(vlax-curve-getDistAtPoint pipe '(10 1)) ; => 11.0

; vlax-curve-getClosestPointTo
(setq line (entmakex '((0 . "LINE") (10 0.0 0.0 0.0) (11 10.0 0.0 0.0))))
(vlax-curve-getClosestPointTo line '(3 5 1)) ; => (3.0 0.0 0.0)
(vlax-curve-getClosestPointTo line '(12 5)) ; => (10.0 0.0 0.0)
(vlax-curve-getClosestPointTo line '(12 5) T) ; => (12.0 0.0 0.0)
(setq arc (entmakex (list '(0 . "ARC") '(10 0.0 0.0 0.0) '(40 . 10.0) '(50 . 0.0) (cons 51 (/ pi 2)))))
(vlax-curve-getClosestPointTo arc '(0 -20 7)) ; => (10.0 0.0 0.0)
(equal '(0.0 -10.0 0.0) (vlax-curve-getClosestPointTo arc '(0 -20 7) T) 1e-9) ; => T

; vlax-curve-getArea
(rtos (vlax-curve-getArea (entmakex '((0 . "CIRCLE") (10 0 0) (40 . 2.0)))) 2 6) ; => "12.566371"
(vlax-curve-getArea (entmakex '((0 . "LWPOLYLINE") (100 . "AcDbEntity") (100 . "AcDbPolyline") (90 . 3) (70 . 1) (10 0 0) (10 10 0) (10 10 4)))) ; => 20.0
