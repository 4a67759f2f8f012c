For i = 1 To 2
Do While a
Select Case b
Case 1
With c
If d Then
x = ((-(Not f(g(1), 2) ^ -2)))
End If
End With
End Select
Loop
Next
