#include "report/print_pages.h"

namespace {

int toTwips(int deviceUnits, int perInch) {
    return perInch > 0 ? static_cast<int>(static_cast<long long>(deviceUnits) * twipsPerInch / perInch) : 0;
}

} // namespace

PageArea pageArea(const PrinterPage& page) {
    return {0, 0, toTwips(page.width, page.horizontalPerInch), toTwips(page.height, page.verticalPerInch)};
}

PageArea printArea(const PrinterPage& page) {
    const PageArea whole = pageArea(page);
    return {twipsPerInch, twipsPerInch, whole.right - twipsPerInch, whole.bottom - twipsPerInch};
}

int footerLeft(const PrinterPage& page, int characters, int averageCharacterWidth) {
    return (page.width - characters * averageCharacterWidth) / 2 - page.leftEdge;
}
