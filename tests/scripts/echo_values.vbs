' WScript.Echo writes each argument as the script host does, joined by one blank.
Dim nothingYet, arr
SetLocale "en-US"
WScript.Echo
WScript.Echo "text", 42, -7.25, True, False
WScript.Echo Null, "|", Empty, "|", nothingYet, "|"
WScript.Echo CByte(255), CInt(-32768), CLng(2147483647), CSng(0.1), CDbl(1E+100), CCur(12.3456)
WScript.Echo DateSerial(2024, 1, 2), TimeSerial(23, 59, 58), DateSerial(1899, 12, 30)
WScript.Echo "caf" & ChrW(233), ChrW(8364), ChrW(&H4E2D)
Set arr = CreateObject("Ravelin.clsArrayLong")
WScript.Echo arr, TypeName(arr), Nothing
WScript.Echo WScript.ScriptName
SetLocale "pt-BR"
WScript.Echo 1.5, True, DateSerial(2024, 1, 2)
