#include "report/moments_messages.h"

namespace {

// "%1" and "%2" stand for the two names.
const char* wordsOf(MomentsFault fault) {
    switch (fault) {
    case MomentsFault::none:
        return "";
    case MomentsFault::empty:
        return "there are no moments in the file";
    case MomentsFault::notText:
        return "a NUL stands in it, so this is no text, or one in UTF-16";
    case MomentsFault::openQuotes:
        return "its quotes do not end";
    case MomentsFault::wrongCells:
        return "it has another number of cells than the head";
    case MomentsFault::unknownColumn:
        return "the column '%1' is none of n, left_out, mean_NAME, max_NAME, cov_I_J";
    case MomentsFault::columnTwice:
        return "the column '%1' stands there twice";
    case MomentsFault::variableTwice:
        return "the variable '%1' stands there twice";
    case MomentsFault::nameTooLong:
        return "the name '%1...' has more than 62 bytes";
    case MomentsFault::unknownPair:
        return "it is not clear which two variables '%1' is of; number them by the places of their means";
    case MomentsFault::noVariables:
        return "there are no variables in it";
    case MomentsFault::noCount:
        return "there is no column n, the number of samples";
    case MomentsFault::badCount:
        return "n is '%1'; it must be a whole number from 1 on, and the same for all variables";
    case MomentsFault::notNumber:
        return "'%1' of '%2' is no finite number";
    case MomentsFault::missingPair:
        return "there is nothing of '%1' and '%2'";
    case MomentsFault::rowsTooMany:
        return "there is more than one row of moments, and no column of groups";
    case MomentsFault::wrongGroup:
        return "group '%1' is wrong, twice or lacking; groups are numbered from 1 without gaps, a row each";
    case MomentsFault::wrongVariable:
        return "the row of '%1' is wrong, twice or lacking; each variable of the head has one";
    case MomentsFault::notSymmetric:
        return "the matrix is not symmetric in '%1' and '%2'";
    case MomentsFault::negative:
        return "the variance or deviation of '%1' is negative";
    case MomentsFault::deviationDiffers:
        return "the deviation of '%1' is not the root of its variance";
    case MomentsFault::tooLarge:
        return "the covariance of '%1' and '%2' is more than their variances allow";
    case MomentsFault::notDefinite:
        return "no data have such a matrix: it is not positive semi-definite, most of all in '%1' and '%2'";
    case MomentsFault::tooManySamples:
        return "there are more than 2,147,483,647 samples";
    }
    return "";
}

} // namespace

void writeMomentsRefusal(TextBuffer& text, const MomentsRefusal& refusal) {
    if (refusal.fault == MomentsFault::none) return;
    if (refusal.line > 0) text.appendFormat("line %lld", refusal.line);
    if (refusal.line > 0 && refusal.cell > 0) text.appendFormat(", cell %lld", refusal.cell);
    if (refusal.line > 0) text.append(": ");
    for (const char* word = wordsOf(refusal.fault); *word != '\0'; ++word) {
        if (*word == '%') {
            text.append(*++word == '1' ? refusal.name : refusal.other);
        } else {
            text.append({word, 1});
        }
    }
    text.append("\n");
}
