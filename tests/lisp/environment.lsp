;;; Layers as the library's functions see and make them.

(defun layer-group (name code) (cdr (assoc code (tblsearch "LAYER" name))))
(defun change-layer (name old new)
  (entmod (subst new old (entget (tblobjname "LAYER" name)))))

(is "a new layer" 'T '(kz_CAD_createLayer nil "Pipes"))
(is "its line type and colour" '("Continuous" 7 0)
    '(list (layer-group "PIPES" 6) (layer-group "PIPES" 62) (layer-group "PIPES" 70)))
(is "not twice" nil '(kz_CAD_createLayer nil "PIPES"))
(is "no name" '(nil nil) '(list (kz_CAD_createLayer nil "") (kz_CAD_createLayer nil "a*b")))

;; In a drawing by its id.
(setq drawing (kz_CADDwgId_create))
(is "in the drawing of an id" 'T '(kz_CAD_createLayer drawing "Valves"))
(is "it is the one in the editor" "Valves" '(layer-group "valves" 2))
(kz_CADDwgId_destroy drawing)
(is "an id that is gone" nil '(kz_CAD_createLayer drawing "More"))
(is "an entity is no drawing" nil '(kz_CAD_createLayer (make-line) "More"))
(is "nor is a handle that nobody has" nil (quote (kz_CAD_createLayer "PLANT" "More")))

;; State.
(defun state (name)
  (list (kz_CAD_LayerIsFrozen name) (kz_CAD_LayerIsLocked name) (kz_CAD_LayerIsOff name)))
(is "as it was made" '(nil nil nil) '(state "Pipes"))
(change-layer "Pipes" '(70 . 0) '(70 . 1))
(is "frozen" '(T nil nil) '(state "pipes"))
(change-layer "Pipes" '(70 . 1) '(70 . 4))
(is "locked" '(nil T nil) '(state "Pipes"))
(change-layer "Pipes" '(70 . 4) '(70 . 0))
(change-layer "Pipes" '(62 . 7) '(62 . -7))
(is "off" '(nil nil T) '(state "Pipes"))
(is "no such layer" '(nil nil nil) '(state "None"))

;; Arguments.
(foreach bad '(nil 5 (1 2))
  (is (strcat "no layer: " (vl-prin1-to-string bad)) '(nil nil nil) (list 'state (list 'quote bad))))
(is "no arguments" '(nil nil nil nil)
    '(list (kz_CAD_LayerIsFrozen) (kz_CAD_LayerIsLocked) (kz_CAD_LayerIsOff) (kz_CAD_createLayer)))
(is "no layer to make" '(nil nil) '(list (kz_CAD_createLayer nil) (kz_CAD_createLayer nil 5)))
(is "nothing was made" nil '(tblsearch "LAYER" "More"))
(is "surplus arguments" 'T '(kz_CAD_createLayer nil "More" "and" "more"))
(finish)
