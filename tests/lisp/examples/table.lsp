;; Examples of symbol tables and dictionaries.

; tblsearch
(cdr (assoc 2 (tblsearch "LAYER" "0"))) ; => "0"
(tblsearch "LAYER" "PIPES") ; => nil
(command "_.layer" "_n" "PIPES" "_c" "1" "PIPES" "")
(cdr (assoc 62 (tblsearch "layer" "pipes"))) ; => 1

; tblnext
(command "_.layer" "_n" "PIPES" "")
(cdr (assoc 2 (tblnext "LAYER" t))) ; => "0"
(cdr (assoc 2 (tblnext "LAYER"))) ; => "PIPES"
(tblnext "LAYER") ; => nil

; tblobjname
(cdr (assoc 0 (entget (tblobjname "LAYER" "0")))) ; => "LAYER"
(tblobjname "LAYER" "PIPES") ; => nil

; namedobjdict
(cdr (assoc 0 (entget (namedobjdict)))) ; => "DICTIONARY"

; dictsearch
(cdr (assoc 0 (dictsearch (namedobjdict) "ACAD_GROUP"))) ; => "DICTIONARY"
(dictsearch (namedobjdict) "PLANT") ; => nil

; dictnext
(setq plant (entmakex '((0 . "DICTIONARY") (100 . "AcDbDictionary"))))
(dictadd (namedobjdict) "PLANT" plant)
(dictadd plant "A" (entmakex '((0 . "XRECORD") (100 . "AcDbXrecord") (1 . "first"))))
(dictadd plant "B" (entmakex '((0 . "XRECORD") (100 . "AcDbXrecord") (1 . "second"))))
(assoc 1 (dictnext plant t)) ; => (1 . "first")
(assoc 1 (dictnext plant)) ; => (1 . "second")
(dictnext plant) ; => nil

; dictadd
(setq record (entmakex '((0 . "XRECORD") (100 . "AcDbXrecord") (1 . "50-W-101"))))
(equal (dictadd (namedobjdict) "TAG" record) record) ; => T
(dictadd (namedobjdict) "TAG" record) ; => nil

; dictremove
(setq record (entmakex '((0 . "XRECORD") (100 . "AcDbXrecord") (1 . "50-W-101"))))
(dictadd (namedobjdict) "TAG" record)
(equal (dictremove (namedobjdict) "TAG") record) ; => T
(dictsearch (namedobjdict) "TAG") ; => nil

; dictrename
(setq record (entmakex '((0 . "XRECORD") (100 . "AcDbXrecord") (1 . "50-W-101"))))
(dictadd (namedobjdict) "TAG" record)
(dictrename (namedobjdict) "TAG" "LINE") ; => "LINE"
(assoc 1 (dictsearch (namedobjdict) "LINE")) ; => (1 . "50-W-101")

; snvalid
(snvalid "PIPES 50") ; => T
(snvalid "50|W") ; => nil
(snvalid "50|W" t) ; => T
(snvalid "a/b") ; => nil

; layoutlist
(layoutlist) ; => ("Layout1")
