' WScript.StdOut and StdErr write text as it is, or as lines.
Dim out
Set out = WScript.StdOut
out.Write "no line end, "
out.Write 42
out.WriteLine
out.WriteLine "a line"
out.WriteBlankLines 2
WScript.StdErr.WriteLine "to standard error"
WScript.StdErr.Write "partial "
WScript.StdErr.WriteLine "line"
WScript.Echo TypeName(out), TypeName(WScript.StdErr)
On Error Resume Next
out.WriteBlankLines -1
WScript.Echo "WriteBlankLines -1 raises", Err.Number
