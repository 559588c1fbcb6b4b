#include "numeric/unbiased_covariance.h"

void takeUnbiased(double samples, Matrix& covariance) {
    for (double& value : covariance) value = value * samples / (samples - 1.0);
}
