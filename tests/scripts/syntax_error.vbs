' A script that does not compile runs nothing.
WScript.Echo "never"
If x Then
  x = (1 +
End If
