;;; What the suites in this folder are written with. A suite is a row of facts, one a line, and ends with
;;; (finish); it runs as `kz run support.lsp SUITE.lsp`.
;;;
;;; (expect VALUE EXPECTED) states a value; (is NAME EXPECTED FORM) and (fails NAME MESSAGE FORM) take a
;;; quoted form, whose error is a fact too.

(setq *passed* 0 *failed* 0 *about* "")

;; Names what the facts behind it are about; shown with those that fail.
(defun about (text) (setq *about* text))

(defun note-fact (held name wanted got)
  (if held
    (setq *passed* (1+ *passed*))
    (progn
      (setq *failed* (1+ *failed*))
      (princ (strcat "FAILED: " name "\n  wanted "))
      (prin1 wanted)
      (princ "\n  got    ")
      (prin1 got)
      (terpri))))

;; The value is the expected one: same type, numbers within 1e-9.
(defun expect (value expected)
  (note-fact (and (= (type value) (type expected)) (equal value expected 1e-9))
             (strcat *about* ", fact " (itoa (+ 1 *passed* *failed*))) expected value))

(defun expect-nil (value) (expect value nil))

;; Equal in value and type: 1 and 1.0 differ here, unlike in (equal 1 1.0).
(defun same (a b)
  (= (vl-prin1-to-string a) (vl-prin1-to-string b)))

;; NAME holds when FORM, which is quoted, has the value WANTED.
(defun is (name wanted form / got)
  (setq got (vl-catch-all-apply 'eval (list form)))
  (if (vl-catch-all-error-p got)
    (setq got (list 'error (vl-catch-all-error-message got))))
  (note-fact (same wanted got) name wanted got))

;; NAME holds when FORM, which is quoted, ends in the error MESSAGE.
(defun fails (name message form / got)
  (setq got (vl-catch-all-apply 'eval (list form)))
  (if (vl-catch-all-error-p got)
    (setq got (vl-catch-all-error-message got)))
  (note-fact (equal message got) name message got))

;; A new line in the drawing.
(defun make-line ()
  (entmakex '((0 . "LINE") (8 . "0") (10 0.0 0.0 0.0) (11 1.0 0.0 0.0))))

;; Handle of an entity.
(defun handle-of (entity) (cdr (assoc 5 (entget entity))))

;; Tells the outcome, and ends the program with an error when a fact has failed, or none was stated.
(defun finish ()
  (princ (strcat (itoa *passed*) " passed, " (itoa *failed*) " failed\n"))
  (if (or (> *failed* 0) (= *passed* 0)) (exit))
  (princ))
