#pragma once

#include "app/program.h"

#include <ddeml.h>

#include "data/spreadsheet.h"

// The client side of the spreadsheet link, one instance for the whole run. A failure is told and the program
// goes on without the link.
void startDdeClient(Program& program);
void endDdeClient(Program& program);

// One conversation with the service "Excel". From its begin to its end the main window is disabled: DDEML
// handles messages while it waits, and none of them may begin another command. What is left of the
// conversation ends with this record.
class DdeWorkbook final : public Workbook {
public:
    explicit DdeWorkbook(Program& program) : program_(program) {}
    ~DdeWorkbook() override { disconnectWorkbook(); }
    DdeWorkbook(const DdeWorkbook&) = delete;
    DdeWorkbook& operator=(const DdeWorkbook&) = delete;

    LinkCode connectWorkbook(const char* path) override;
    LinkCode requestCell(const char* item, CellReply& reply) override;
    LinkCode disconnectWorkbook() override;

private:
    bool isConnected() const;

    Program& program_;
    bool begun_ = false;
    HSZ service_ = nullptr;
    HSZ topic_ = nullptr;
    HCONV conversation_ = nullptr;
};
