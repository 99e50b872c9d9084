' A late-bound VBScript client: creates the control by both ProgIDs, reads a property by name and asks for
' icon fonts. Without a front end the reply carries the names and sizes only; a request without an answer
' comes back as an empty string. A failed creation or call stops the script before it prints SCRIPT-OK.
Option Explicit
Dim problems, progId, ctl, reply
problems = ""
For Each progId In Array("TOV.HTMLIEControl.1", "TOV.HTMLIEControl")
  Set ctl = CreateObject(progId)
  WScript.Echo progId & ".Version = " & ctl.Version
  If ctl.Version <> 62 Then problems = problems & " " & progId & ".Version"
Next

reply = ctl.LoadIconFont("<Icons><Icon><Icon_Name>S1</Icon_Name><Font_Size>12</Font_Size></Icon>" & _
                         "<Icon><ICON_NAME>a&lt;b</ICON_NAME></Icon></Icons>")
WScript.Echo "reply: " & reply
If reply <> "<Icons><Icon><Icon_Name>S1</Icon_Name><Font_Size>12</Font_Size></Icon>" & _
            "<Icon><Icon_Name>a<b</Icon_Name><Font_Size></Font_Size></Icon></Icons>" Then problems = problems & " two-icons"
reply = ctl.LoadIconFont("<Icons><Icon>")
If TypeName(reply) <> "String" Or reply <> "" Then problems = problems & " ill-formed"
Set ctl = Nothing

If problems <> "" Then
  WScript.Echo "FAILED:" & problems
  WScript.Quit 1
End If
WScript.Echo "SCRIPT-OK"
