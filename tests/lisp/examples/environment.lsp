;; Examples of the program's surroundings.

; setenv
(setenv "PLANT" "north") ; => "north"

; getenv
(setenv "PLANT" "north")
(getenv "PLANT") ; => "north"
(getenv "NO_SUCH_NAME") ; => nil

; setcfg
(setenv "KZ_SETTINGS" "settings.txt")
(setcfg "AppData/Pumps/unit" "bar") ; => "bar"

; getcfg
(setenv "KZ_SETTINGS" "settings.txt")
(setcfg "AppData/Pumps/unit" "bar")
(getcfg "AppData/Pumps/unit") ; => "bar"
(getcfg "AppData/Pumps/none") ; => nil

; vl-registry-write
(setenv "KZ_SETTINGS" "settings.txt")
(vl-registry-write "HKEY_CURRENT_USER\\Software\\Plant" "limits" '(1 2.5 "x")) ; => (1 2.5 "x")
(vl-registry-write "HKEY_CURRENT_USER\\Software\\Plant\\Pumps" "" "all") ; => "all"

; vl-registry-read
(setenv "KZ_SETTINGS" "settings.txt")
(vl-registry-write "HKEY_CURRENT_USER\\Software\\Plant" "limits" '(1 2.5 "x"))
(vl-registry-write "HKEY_CURRENT_USER\\Software\\Plant\\Pumps" "" "all")
(vl-registry-read "HKEY_CURRENT_USER\\Software\\PLANT" "Limits") ; => (1 2.5 "x")
(vl-registry-read "HKEY_CURRENT_USER\\Software\\Plant\\Pumps") ; => "all"
(vl-registry-read "HKEY_CURRENT_USER\\Software\\None") ; => nil

; vl-registry-descendents
(setenv "KZ_SETTINGS" "settings.txt")
(vl-registry-write "HKEY_CURRENT_USER\\Software\\Plant" "limits" '(1 2.5 "x"))
(vl-registry-descendents "HKEY_CURRENT_USER\\Software") ; => ("Plant")
(vl-registry-descendents "HKEY_CURRENT_USER\\Software\\Plant" T) ; => ("limits")

; vl-registry-delete
(setenv "KZ_SETTINGS" "settings.txt")
(vl-registry-write "HKEY_CURRENT_USER\\Software\\Plant" "limits" '(1 2.5 "x"))
(vl-registry-write "HKEY_CURRENT_USER\\Software\\Plant\\Pumps" "" "all")
(vl-registry-delete "HKEY_CURRENT_USER\\Software\\Plant" "limits") ; => T
(vl-registry-delete "HKEY_CURRENT_USER\\Software\\Plant") ; => T
(vl-registry-delete "HKEY_CURRENT_USER\\Software\\Plant") ; => nil

; ver
(type (ver)) ; => STR

; startapp
(startapp "notepad") ; => nil
