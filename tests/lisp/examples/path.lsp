;; Examples of files and folders by their names.

; vl-filename-base
(vl-filename-base "c:\\plant\\pumps.dwg") ; => "pumps"
(vl-filename-base "pumps") ; => "pumps"

; vl-filename-directory
(vl-filename-directory "c:\\plant\\pumps.dwg") ; => "c:\\plant"
(vl-filename-directory "pumps.dwg") ; => ""

; vl-filename-extension
(vl-filename-extension "pumps.new.dwg") ; => ".dwg"
(vl-filename-extension "plant.old/pumps") ; => nil

; vl-mkdir
(vl-mkdir "made") ; => T
(vl-mkdir "made") ; => nil

; vl-file-directory-p
(vl-mkdir "made")
(vl-file-directory-p "made") ; => T
(vl-file-directory-p "nothing") ; => nil

; vl-file-copy
(vl-mkdir "made")
(setq f (open "made/a.txt" "w"))
(write-line "pipe" f)
(close f)
(vl-file-copy "made/a.txt" "made/b.txt") ; => 5
(vl-file-copy "made/a.txt" "made/b.txt") ; => nil
(vl-file-copy "made/a.txt" "made/b.txt" T) ; => 5

; vl-file-size
(vl-mkdir "made")
(setq f (open "made/a.txt" "w"))
(write-line "pipe" f)
(close f)
(vl-file-size "made/a.txt") ; => 5
(vl-file-size "made") ; => 0
(vl-file-size "nothing") ; => nil

; vl-file-rename
(vl-mkdir "made")
(setq f (open "made/a.txt" "w"))
(write-line "pipe" f)
(close f)
(vl-file-rename "made/a.txt" "made/b.txt") ; => T
(vl-file-rename "made/a.txt" "made/b.txt") ; => nil

; vl-directory-files
(vl-mkdir "made")
(setq f (open "made/a.txt" "w"))
(write-line "pipe" f)
(close f)
(vl-file-copy "made/a.txt" "made/b.lsp")
(vl-directory-files "made") ; => ("." ".." "a.txt" "b.lsp")
(vl-directory-files "made" "*.lsp" 1) ; => ("b.lsp")
(vl-directory-files "made" nil -1) ; => ("." "..")

; vl-file-systime
(vl-mkdir "made")
(setq f (open "made/a.txt" "w"))
(write-line "pipe" f)
(close f)
(mapcar 'type (vl-file-systime "made/a.txt")) ; => (INT INT INT INT INT INT INT)
(vl-file-systime "nothing") ; => nil

; findtrustedfile
(vl-mkdir "made")
(setq f (open "made/a.txt" "w"))
(write-line "pipe" f)
(close f)
(vl-filename-base (findtrustedfile "made/a.txt")) ; => "a"
(findtrustedfile "nothing.lsp") ; => nil
