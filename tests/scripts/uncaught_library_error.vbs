' An error no On Error Resume Next catches stops the script with its line, number and source.
Dim arr
Set arr = CreateObject("Ravelin.clsArrayLong")
arr.add 1
WScript.Echo "first item", arr.item(0)

Sub ReadPastTheEnd()
  WScript.Echo arr.item(1)
End Sub

ReadPastTheEnd
WScript.Echo "not reached"
