;;; What every suite uses. A suite states facts with (is ...) and (fails ...), one a line, and ends with
;;; (finish), which says how many held and ends the program with an error when one did not.

(setq *facts* 0 *failed* 0)

(defun note-fact (held name wanted got)
  (setq *facts* (1+ *facts*))
  (if (not held)
    (progn
      (setq *failed* (1+ *failed*))
      (princ (strcat "FAILED: " name "\n  wanted "))
      (prin1 wanted)
      (princ "\n  got    ")
      (prin1 got)
      (terpri))))

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

(defun finish ()
  (princ (strcat (itoa (- *facts* *failed*)) " of " (itoa *facts*) " facts hold\n"))
  (if (or (> *failed* 0) (= *facts* 0)) (exit))
  (princ))
