' Records returned by library members: fields are read and written by name, the record is a
' value (a changed copy leaves the array alone until it is stored back).
Set pairs = CreateObject("Ravelin.clsArrayStringLong")
pairs.add "Ana", 7
r = pairs.getItem(0)
WScript.Echo TypeName(r), r.sValue, r.lValue
r.sValue = "Bea"
r.LVALUE = "9"
WScript.Echo pairs.getItemString(0), TypeName(r.lValue)
pairs.setItem r, 0
WScript.Echo pairs.getItemString(0), pairs.getItemLong(0)
With r
  WScript.Echo .sValue & "/" & .lValue
End With
On Error Resume Next
WScript.Echo r.missing
WScript.Echo Err.Number, Err.Description
Err.Clear
pairs.setItem 5, 0
WScript.Echo Err.Number, Err.Description
