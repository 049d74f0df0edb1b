;; Examples of selection sets.

; ssget
(command "_.line" '(0.0 0.0) '(5.0 0.0) "")
(command "_.circle" '(20.0 0.0) 2.0)
(sslength (ssget "_X")) ; => 2
(sslength (ssget "_X" '((0 . "CIRCLE")))) ; => 1
(ssget "_X" '((8 . "PIPES"))) ; => nil
(sslength (ssget "_X" '((-4 . "<OR") (0 . "LINE") (40 . 2.0) (-4 . "OR>")))) ; => 2
(sslength (ssget "_W" '(-1.0 -1.0) '(6.0 1.0))) ; => 1
;< last
;<
(sslength (ssget '((0 . "CIRCLE")))) ; => 1

; ssadd
(setq point (entmakex '((0 . "POINT") (10 1.0 2.0 0.0))))
(setq set (ssadd)) ; => <Selection set: ...>
(ssadd point set) ; => <Selection set: ...>
(sslength set) ; => 1
(sslength (ssadd point)) ; => 1

; ssdel
(setq point (entmakex '((0 . "POINT") (10 1.0 2.0 0.0))))
(setq set (ssadd point))
(ssdel point set) ; => <Selection set: ...>
(sslength set) ; => 0
(ssdel point set) ; => nil

; sslength
(sslength (ssadd)) ; => 0
(sslength nil) ; error: bad argument type: lselsetp nil

; ssname
(setq point (entmakex '((0 . "POINT") (10 1.0 2.0 0.0))))
(setq set (ssadd point))
(equal (ssname set 0) point) ; => T
(ssname set 1) ; => nil

; ssmemb
(setq point (entmakex '((0 . "POINT") (10 1.0 2.0 0.0))))
(equal (ssmemb point (ssadd point)) point) ; => T
(ssmemb point (ssadd)) ; => nil

; ssnamex
(setq point (entmakex '((0 . "POINT") (10 1.0 2.0 0.0))))
(ssnamex (ssget "_X")) ; => ((0 <Entity name: ...> 0))
(ssnamex (ssget "_C" '(0.0 0.0) '(3.0 3.0)) 0) ; => ((3 <Entity name: ...> 0 -1)...)

; sssetfirst
(setq point (entmakex '((0 . "POINT") (10 1.0 2.0 0.0))))
(sssetfirst nil (ssadd point)) ; => (nil <Selection set: ...>)
(sslength (ssget "_I")) ; => 1
(sssetfirst nil) ; => (nil nil)

; ssgetfirst
(setq point (entmakex '((0 . "POINT") (10 1.0 2.0 0.0))))
(ssgetfirst) ; => (nil nil)
(sssetfirst nil (ssadd point))
(sslength (cadr (ssgetfirst))) ; => 1
