' WScript.Quit ends the script at once with its code; On Error does not stop it.
On Error Resume Next
WScript.Echo "before"
WScript.Quit 3
WScript.Echo "after"
