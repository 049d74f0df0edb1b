;; Examples of modules and name spaces.

; vl-load-com
(vl-load-com) ; => nil

; vl-load-reactors
(vl-load-reactors) ; => nil

; vl-load-all
(vl-load-all "pumps.lsp") ; => nil

; vl-bb-set
(vl-bb-set 'tags '("P-101")) ; => ("P-101")

; vl-bb-ref
(vl-bb-set 'tags '("P-101"))
(vl-bb-ref 'tags) ; => ("P-101")
(vl-bb-ref 'nothing) ; => nil

; vl-doc-set
(vl-doc-set 'unit "bar") ; => "bar"

; vl-doc-ref
(vl-doc-set 'unit "bar")
(vl-doc-ref 'unit) ; => "bar"
unit ; => "bar"

; vl-doc-export
(vl-doc-export 'pumps) ; => PUMPS

; vl-doc-import
(vl-doc-import "plant" 'pumps) ; => nil

; vl-propagate
(vl-propagate 'unit) ; => nil

; vl-arx-import
(vl-arx-import "plant.arx") ; => nil

; vl-acad-defun
(vl-acad-defun 'c:pumps) ; => C:PUMPS

; vl-acad-undefun
(vl-acad-undefun 'c:pumps) ; => C:PUMPS

; autoload
(setq f (open "late.lsp" "w"))
(write-line "(defun c:late () \"it is here\")" f)
(close f)
(autoload "late" '("late")) ; => nil
(c:late) ; => "it is here"

; arx
(member "kz_zaglaid.arx" (arx)) ; => ("kz_zaglaid.arx" ...)

; arxload
(arxload "C:\\suite\\KZ_zaglaid.arx") ; => "C:\\suite\\KZ_zaglaid.arx"
(arxload "nothing" "not here") ; => "not here"
(arxload "nothing") ; error: ARXLOAD failed: "nothing"

; arxunload
(arxunload "kz_zaglaid" "it stays") ; => "it stays"
(arxunload "kz_zaglaid") ; error: ARXUNLOAD failed: "kz_zaglaid"

; vl-list-loaded-vlx
(vl-list-loaded-vlx) ; => nil

; vl-vlx-loaded-p
(vl-vlx-loaded-p "suite") ; => nil

; vl-list-exported-functions
(vl-list-exported-functions) ; => nil

; vl-exit-with-error
(vl-exit-with-error "no pump") ; => ; error: no pump

; vl-exit-with-value
(vl-exit-with-value 1) ; => ; error: quit / exit abort

; mem
(mem) ; => nil

; gc
(gc) ; => nil

; alloc
(alloc 1000) ; => 1000

; expand
(expand 10) ; => 10
