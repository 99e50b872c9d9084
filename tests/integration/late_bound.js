// A late-bound JScript front end: every call goes through GetIDsOfNames and Invoke by DISPID.
var failures = 0;
function check(cond, what) {
  if (!cond) { WScript.Echo("FAILED: " + what); failures++; }
}

var ctl = new ActiveXObject("TOV.HTMLIEControl"); // the VBScript client reads Version by both ProgIDs

// Without InitControl there is no browser: a history method answers code 3 as its return value.
check(ctl.GoBack() == 3, "GoBack() before InitControl gives 3");

// A text and a number property put and read by name; what they mean is the component tests' business.
ctl.URLPrefixLocal = "http://srv/app/";
check(ctl.URLPrefixLocal == "http://srv/app/", "URLPrefixLocal round trip");
ctl.UIFlag = 0x40002;
check(ctl.UIFlag == 0x40002, "UIFlag round trip");

var threw = false;
try { ctl.NoSuchMember(); } catch (e) { threw = true; }
check(threw, "an unknown name fails");

ctl = null;
if (failures == 0) WScript.Echo("SCRIPT-OK");
WScript.Quit(failures);
