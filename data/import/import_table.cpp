#include "data/import/import_table.h"

#include <limits>

#include "data/import/import_planning.h"
#include "data/import/table_writer.h"

ErrorCode importTable(ByteSource& source, const ImportOptions& options, TableSink& sink,
                      ImportMessages& messages, TableSink* codebook) {
    ImportSurvey survey;
    ImportPlan plan;
    constexpr Index all = std::numeric_limits<Index>::max();
    ErrorCode code = surveyImport(source, options, all, survey, messages);
    if (code == success) code = planImport(survey, options, plan, messages);
    if (code == success) code = writeTable(source, options, survey, plan, all, sink, messages);
    if (code == success && codebook != nullptr && !writeCodebook(survey, plan, *codebook)) {
        messages.refuse("the codebook cannot be written");
        code = illegalData;
    }
    messages.finish();
    return messages.ranOutOfMemory() ? outOfMemory : code;
}
