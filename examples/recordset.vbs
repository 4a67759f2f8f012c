' A record set built in memory as a script for the data-access objects builds one: fields
' appended with the enumeration constants, rows added, walked, changed in batch mode, the
' pending changes seen through the filter and committed with UpdateBatch.
' Run with: ravelin examples/recordset.vbs
SetLocale "en-US"
Set rs = CreateObject("ADODB.Recordset")
rs.CursorLocation = adUseClient
rs.LockType = adLockBatchOptimistic
rs.Fields.Append "ID", adInteger
rs.Fields.Append "Name", adVarWChar, 20, adFldIsNullable Or adFldMayBeNull
rs.Fields.Append "Price", adCurrency
rs.Fields.Append "Added", adDate
rs.Fields.Append "Active", adBoolean
rs.Open
WScript.Echo "State", rs.State, "Fields", rs.Fields.Count, "BOF", rs.BOF, "EOF", rs.EOF

Sub AddRow(id, name, price, added, active)
  rs.AddNew
  rs("ID") = id
  rs("Name") = name
  rs.Fields("Price").Value = price
  rs.Fields.Item("Added") = added
  rs.Fields(4) = active
  rs.Update
End Sub

AddRow 1, "Coffee", "2.5", DateSerial(2010, 6, 7), True
AddRow 2, "Tea", 1.75, "2010-06-08", 0
AddRow 3, Null, 10, 40338, "True"
rs.UpdateBatch
WScript.Echo "RecordCount", rs.RecordCount

Sub Walk(title)
  WScript.Echo title
  If rs.BOF And rs.EOF Then Exit Sub
  rs.MoveFirst
  Do Until rs.EOF
    WScript.Echo " ", rs.AbsolutePosition, rs("ID"), rs("Name"), rs("Price"), _
        rs("Added"), rs("Active"), "status", rs.Status
    rs.MoveNext
  Loop
End Sub
Walk "After UpdateBatch:"

For Each f In rs.Fields
  WScript.Echo f.Name, f.Type, f.DefinedSize, TypeName(f)
Next

' Change one row, delete another and add a third: all stay pending in batch mode.
rs.MoveFirst
rs("Price") = 3
rs.Update
rs.MoveNext
rs.Delete
rs.AddNew
rs("ID") = 4
rs("Name") = "Juice"
rs.MoveFirst
WScript.Echo "Original price of the first row:", rs("Price").OriginalValue
rs.Filter = adFilterPendingRecords
WScript.Echo "Pending:", rs.RecordCount
rs.MoveFirst
Do Until rs.EOF
  If rs.Status = adRecDeleted Then
    WScript.Echo "  deleted row"
  Else
    WScript.Echo " ", rs("ID"), "status", rs.Status
  End If
  rs.MoveNext
Loop
rs.UpdateBatch
WScript.Echo "Pending after UpdateBatch:", rs.RecordCount
rs.Filter = adFilterNone
Walk "After the second UpdateBatch:"

' The errors keep the data-access objects' numbers and texts.
On Error Resume Next
rs.MoveNext
WScript.Echo Err.Number, Err.Description
Err.Clear
WScript.Echo rs("Nope")
WScript.Echo Err.Number, Err.Description
Err.Clear
rs.MoveFirst
rs("ID") = "not a number"
WScript.Echo Hex(Err.Number), Err.Description
Err.Clear
rs.Fields.Append "Late", adDouble
WScript.Echo Err.Number, Err.Description
On Error GoTo 0
rs.Close
WScript.Echo "State", rs.State
