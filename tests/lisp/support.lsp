; What the suites in this folder are written with. A suite is a row of facts, one a line, and ends
; with (finish); it runs as `kz run support.lsp SUITE.lsp`.

(setq *passed* 0 *failed* 0 *about* "")

; Names what the facts behind it are about; shown with those that fail.
(defun about (text) (setq *about* text))

(defun count-fact (good value expected)
  (if good
    (setq *passed* (1+ *passed*))
    (progn
      (setq *failed* (1+ *failed*))
      (princ (strcat "\n" *about* ", fact " (itoa (+ *passed* *failed*)) ": expected "
                     (vl-prin1-to-string expected) ", got " (vl-prin1-to-string value))))))

; The value is the expected one: same type, numbers within 1e-9.
(defun expect (value expected)
  (count-fact (and (= (type value) (type expected)) (equal value expected 1e-9)) value expected))

(defun expect-nil (value) (expect value nil))

; A new line in the drawing.
(defun make-line ()
  (entmakex '((0 . "LINE") (8 . "0") (10 0.0 0.0 0.0) (11 1.0 0.0 0.0))))

; Handle of an entity.
(defun handle-of (entity) (cdr (assoc 5 (entget entity))))

; Tells the outcome, and ends the program with an error when a fact has failed.
(defun finish ()
  (princ (strcat "\n" (itoa *passed*) " passed, " (itoa *failed*) " failed\n"))
  (if (> *failed* 0) (exit))
  (princ))
