#pragma once

#include "numeric/error_code.h"

// A model of the purpose variable y that is linear once the variables are transformed. Linear regression is
// the one that transforms nothing.
struct CurveModel {
    std::int32_t kind;
    const char* name; // in the report; null for linear regression

    double (*explanatory)(double x, double degree);
    bool (*takesExplanatory)(double x);
    bool hasDegrees; // each variable has a power of its own; the degree is 1 otherwise
    double (*purpose)(double y);
    bool (*takesPurpose)(double y);
    double (*response)(double value); // y again

    // Whether the model's columns differ from the data's own.
    bool changesExplanatory(double degree) const;
    bool changesPurpose() const;
};

// The model of kind 1 or 41..46; null for another.
const CurveModel* findCurveModel(std::int32_t kind);
