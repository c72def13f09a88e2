#include "shell/services/LongJobs.h"

namespace td {
namespace {

int g_yieldDepth = 0;
bool g_stopRequested = false;

}  // namespace

JobYieldScope::JobYieldScope()
{
    ++g_yieldDepth;
}

JobYieldScope::~JobYieldScope()
{
    --g_yieldDepth;
}

bool InsideJobYield()
{
    return g_yieldDepth > 0;
}

void RequestJobsStop()
{
    g_stopRequested = true;
}

bool JobsStopRequested()
{
    return g_stopRequested;
}

void ClearJobsStop()
{
    g_stopRequested = false;
}

}  // namespace td
