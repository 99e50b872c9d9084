// Runs a script in the current document. Interim body: the call and its script text are traced only.
#include "control/TOVHTMLControl.h"

void CTOVHTMLControl::InternalExecuteScript(const std::string& script)
{
    CTraceScope scope(m_trace, TraceSinkRef(), "InternalExecuteScript");
    scope.Detail(script);
}
