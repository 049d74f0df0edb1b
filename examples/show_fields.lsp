;;; Prints the PLANT fields of every entity that has some.

(setq ent (entnext))
(while ent
  (setq fields (kz_XData_getFldList ent nil "PLANT"))
  (if fields
    (progn
      (princ (strcat (cdr (assoc 0 (entget ent))) " " (cdr (assoc 5 (entget ent))) ": "))
      (prin1 fields)
      (terpri)))
  (setq ent (entnext ent)))
(princ)
