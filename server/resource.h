#pragma once
// Resource identities of TOVHTML.OCX.
#define IDS_PROJNAME              100
#define IDR_TOVHTMLCONTROL        101
#define IDD_TOVSIMPLEBROWSE       105
#define IDC_SIMPLEBROWSE_BROWSER  202
#define RT_DLGINIT_TYPE           240
