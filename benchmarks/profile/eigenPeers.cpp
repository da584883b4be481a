// The polynomial fit by Eigen: the normal equations of the matrix of powers.
#include "profile/jobs.h"

#include <Eigen/Dense>

namespace kxbench {

namespace {

[[maybe_unused]] const bool isRegistered = [] {
    for (const int degree : {5, 20}) {
        const std::string name = "polynomial fit, degree " + std::to_string(degree);
        addOnNumbers(
            name.c_str(), "peer_eigen_normal_equations",
            [=](ProfileJob& j) {
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
                const Eigen::VectorXd fitted = powers * coeffs;
                j.values.assign(fitted.data(), fitted.data() + n);
            },
            digestNearly);
    }
    return true;
}();

} // namespace

} // namespace kxbench
