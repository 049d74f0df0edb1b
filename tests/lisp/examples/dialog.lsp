;; Examples of dialogs.

; getfiled
(close (open "plan.txt" "w"))
;< PLAN
(getfiled "Choose a plan" "" "txt" 0) ; => ".../plan.txt"
;< missing
;< plan.txt
(getfiled "Choose a plan" "" "txt;csv" 0) ; => ".../plan.txt"
;< new
(getfiled "Name the list" "" "csv" 1) ; => ".../new.csv"
(getfiled "Choose a plan" "plan.txt" "txt" 8) ; => nil

; acad_colordlg
;< red
(acad_colordlg 7) ; => 1
;< bylayer
;< 30
(acad_colordlg 7 nil) ; => 30
(acad_colordlg 7) ; => nil
