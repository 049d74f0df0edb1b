;; Examples of files.

; open
(setq file (open "notes.txt" "w")) ; => #<file "notes.txt">
(write-line "first" file)
(close file) ; => nil
(setq file (open "notes.txt" "a"))
(write-line "second" file)
(close file)
(setq file (open "notes.txt" "r"))
(list (read-line file) (read-line file) (read-line file)) ; => ("first" "second" nil)
(close file)
(open "no/such/folder/notes.txt" "w") ; => nil
(open "unmade.txt" "w" 5) ; error: bad argument type: stringp 5
(findfile "unmade.txt") ; => nil

; close
(setq file (open "notes.txt" "w"))
(close file) ; => nil
(close nil) ; error: bad argument type: FILE nil

; read-line
(setq file (open "notes.txt" "w"))
(princ "one\ntwo" file)
(close file)
(setq file (open "notes.txt" "r"))
(read-line file) ; => "one"
(read-line file) ; => "two"
(read-line file) ; => nil
(close file)

; read-char
(setq file (open "notes.txt" "w"))
(princ "A\n" file)
(close file)
(setq file (open "notes.txt" "r"))
(list (read-char file) (read-char file) (read-char file)) ; => (65 10 nil)
(close file)

; findfile
(close (open "here.txt" "w"))
(findfile "here.txt") ; => ".../here.txt"
(findfile "missing.txt") ; => nil

; vl-file-delete
(close (open "old.txt" "w"))
(vl-file-delete "old.txt") ; => T
(vl-file-delete "old.txt") ; => nil

; vl-filename-mktemp
(vl-filename-mktemp "list.txt") ; => "...list...txt"
(findfile (vl-filename-mktemp)) ; => nil

; load
(setq file (open "tools.lsp" "w"))
(write-line "(defun half (x) (/ x 2.0)) (half 3)" file)
(close file)
(load "tools") ; => 1.5
(half 5) ; => 2.5
(load "missing" "not there") ; => "not there"
(load "missing") ; error: LOAD failed: "missing"
