;;; Gives each pipe of the drawing a line number and its length, each pump its service.

(setq number 100)

(defun tag-pipe (ent / data)
  (setq data (entget ent)
        number (1+ number))
  (kz_XData_setFldList ent
    (list (list "LINE" (strcat "50-W-" (itoa number)))
          (list "LENGTH" (distance (cdr (assoc 10 data)) (cdr (assoc 11 data))))
          (list "ENDS" (cdr (assoc 10 data)) (cdr (assoc 11 data))))
    "PLANT" 1))

(setq ent (entnext) pipes 0)
(while ent
  (setq data (entget ent))
  (cond ((and (= (cdr (assoc 0 data)) "LINE") (= (cdr (assoc 8 data)) "PIPE"))
         (if (tag-pipe ent) (setq pipes (1+ pipes))))
        ((= (cdr (assoc 0 data)) "INSERT")
         (kz_XData_setFld ent "raw water" "SERVICE" "PLANT")))
  (setq ent (entnext ent)))
(princ (strcat (itoa pipes) " pipes have their fields\n"))
(princ)
