' A runtime error left uncaught once On Error GoTo 0 switches trapping off.
Dim x
On Error Resume Next
x = 1 / 0
WScript.Echo "trapped", Err.Number, Err.Description
On Error GoTo 0
WScript.Echo "then"
x = CInt("forty")
