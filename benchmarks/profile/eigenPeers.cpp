// The polynomial fit and the check for a wheel defect by Eigen, with the normal equations of the Vandermonde matrix.
#include "profile/jobs.h"

#include <Eigen/Dense>

namespace kxbench {

namespace {

/// The values of the polynomial at the positions.
Eigen::VectorXd fitted(const ProfileJob& j, int degree) {
    const auto n = static_cast<Eigen::Index>(j.xs.size());
    const Eigen::VectorXd x = Eigen::Map<const Eigen::VectorXf>(j.xs.data(), n).cast<double>() / 40.0;
    const Eigen::VectorXd y = Eigen::Map<const Eigen::VectorXf>(j.ys.data(), n).cast<double>();
    Eigen::MatrixXd powers(n, degree + 1);
    powers.col(0).setOnes();
    for (int k = 1; k <= degree; ++k) {
        powers.col(k) = powers.col(k - 1).cwiseProduct(x);
    }
    const Eigen::MatrixXd squares = powers.transpose() * powers;
    const Eigen::VectorXd coeffs = squares.ldlt().solve(powers.transpose() * y);
    return powers * coeffs;
}

[[maybe_unused]] const bool isRegistered = [] {
    constexpr const char* kWho = "peer_eigen_normal_equations";
    for (const int degree : {5, 20}) {
        const std::string name = "polynomial fit, degree " + std::to_string(degree);
        addOnNumbers(
            name.c_str(), kWho,
            [=](ProfileJob& j) {
                const Eigen::VectorXd values = fitted(j, degree);
                j.values.assign(values.begin(), values.end());
            },
            digestNearly);
    }
    addOnNumbers(
        "wheel defect", kWho,
        [](ProfileJob& j) {
            const Eigen::VectorXd values = fitted(j, 20);
            const Eigen::Map<const Eigen::VectorXf> ys(j.ys.data(), values.size());
            const auto deviating = ((ys.cast<double>() - values).array().abs() > 0.3).count();
            j.values = {deviating <= 5 ? 1.0 : 0.0};
        },
        digestNearly, 10);
    return true;
}();

} // namespace

} // namespace kxbench
