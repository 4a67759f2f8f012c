' The script's arguments: by index, through Item, counted, and walked with For Each.
Dim a, n
WScript.Echo WScript.Arguments.Count, WScript.Arguments.Length
WScript.Echo WScript.Arguments(0)
WScript.Echo WScript.Arguments.Item(2)
n = 0
For Each a In WScript.Arguments
  n = n + 1
  WScript.Echo n & ": [" & a & "]"
Next
On Error Resume Next
a = WScript.Arguments(3)
WScript.Echo "Arguments(3) raises " & Err.Number
On Error GoTo 0
WScript.Echo WScript.ScriptName
