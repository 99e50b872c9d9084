' A late-bound script client asks the control for icon fonts. Without a front end the reply carries the
' names and sizes only; a request without an answer comes back as an empty string.
Option Explicit
Dim ctl, reply, expected, problems
problems = ""
Set ctl = CreateObject("TOV.HTMLIEControl")

reply = ctl.LoadIconFont("<Icons><Icon><Icon_Name>S1</Icon_Name><Font_Size>12</Font_Size></Icon>" & _
                         "<Icon><ICON_NAME>a&lt;b</ICON_NAME></Icon></Icons>")
expected = "<Icons><Icon><Icon_Name>S1</Icon_Name><Font_Size>12</Font_Size></Icon>" & _
           "<Icon><Icon_Name>a<b</Icon_Name><Font_Size></Font_Size></Icon></Icons>"
WScript.Echo "reply: " & reply
If reply <> expected Then problems = problems & " two-icons"

reply = ctl.LoadIconFont("<Icons><Icon>")
If TypeName(reply) <> "String" Or reply <> "" Then problems = problems & " ill-formed"
Set ctl = Nothing

If problems <> "" Then
  WScript.Echo "FAILED:" & problems
  WScript.Quit 1
End If
WScript.Echo "SCRIPT-OK"
WScript.Quit 0
