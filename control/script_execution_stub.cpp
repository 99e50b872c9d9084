// Placeholder for the script routine until script execution is built: it only traces that it ran.
#include "control/TOVHTMLControl.h"

void CTOVHTMLControl::InternalExecuteScript(const std::string& script)
{
    CTraceScope scope(m_trace, TraceSinkRef(), "InternalExecuteScript");
    scope.Detail(script);
}
