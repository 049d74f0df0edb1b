; The work that AutoLISP and its peers are timed on: calls, lists, texts. work.scm is the same in Scheme.
(defun fib (n)
  (if (< n 2) n (+ (fib (- n 1)) (fib (- n 2)))))

(defun numbers (count / out)
  (while (> count 0)
    (setq out (cons count out))
    (setq count (- count 1)))
  out)

(defun lists (rounds / total)
  (setq total 0)
  (while (> rounds 0)
    (setq total
      (+ total
         (apply '+ (mapcar '(lambda (n) (+ n 1)) (reverse (append (numbers 1000) (numbers 1000)))))
         (cadr (assoc 900 (mapcar '(lambda (n) (list n (* n 2))) (numbers 1000))))))
    (setq rounds (- rounds 1)))
  total)

(defun words (count / out)
  (setq out "")
  (while (> count 0)
    (setq out (strcat out (substr "abcdefghij" (+ 1 (rem count 10)) 1)))
    (setq count (- count 1)))
  out)

(defun letters (text char / place found)
  (setq place 1 found 0)
  (while (<= place (strlen text))
    (if (= (substr text place 1) char) (setq found (+ found 1)))
    (setq place (+ place 1)))
  found)

(defun texts (rounds / total)
  (setq total 0)
  (while (> rounds 0)
    (setq total (+ total (letters (strcase (words 1000)) "C") (strlen (itoa rounds))))
    (setq rounds (- rounds 1)))
  total)

(defun timed (name work / start value)
  (setq start (getvar "MILLISECS") value (eval work))
  (princ (strcat "autolisp " name " " (itoa (- (getvar "MILLISECS") start)) " " (itoa value) "\n")))

(timed "fib" '(fib 27))
(timed "lists" '(lists 200))
(timed "texts" '(texts 200))
(princ)
