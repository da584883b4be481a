// The JSON of a chain of operations, written and read again.
#include <KxInspect/Error.h>
#include <KxInspect/ProfileChain.h>

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace KxInspect;

/// A plate with a ridge and a joint: everything that is looked for is there or has a reason.
Profile plate() {
    Profile profile;
    for (int i = 0; i < 200; ++i) {
        const float x = 0.1f * static_cast<float>(i);
        profile.points.push_back({x + (x > 15.0f ? 0.8f : 0.0f), (x > 6.0f && x < 8.0f ? 1.5f : 0.0f) + 0.03f * x});
    }
    return profile;
}

ProfileResult resultOf(const std::string& steps) {
    ProfileOptions options;
    options.steps = profileSteps(steps);
    options.line = options.circle = true;
    options.polynomial = 11; // c10 and c11 stand before c2 in the text
    options.features = {ProfileFeature::Weld, ProfileFeature::Circle, ProfileFeature::Cuts, ProfileFeature::Joint};
    ProfileResult result = examineProfile(plate(), options);
    result.file = "plate.csv";
    result.record = 3;
    return result;
}

TEST(ProfileJson, IsTheSameAfterReading) {
    for (const char* const steps : {"", "shift:0.5,-1 trimX:1,nan", "toPolar", "trimX:100,200"}) {
        for (const Pictures pictures : {Pictures::Left, Pictures::Included}) {
            SCOPED_TRACE(steps);
            const ProfileResult result = resultOf(steps);
            const ProfileResult read = profileFromJson(toJson(result, pictures));
            EXPECT_EQ(toJson(read, pictures), toJson(result, pictures));
            ASSERT_EQ(read.findings.size(), result.findings.size());
            for (std::size_t i = 0; i < read.findings.size(); ++i) {
                ASSERT_EQ(read.findings[i].values.size(), result.findings[i].values.size()) << read.findings[i].name;
                for (std::size_t k = 0; k < read.findings[i].values.size(); ++k) {
                    EXPECT_EQ(read.findings[i].values[k].key, result.findings[i].values[k].key);
                    EXPECT_EQ(read.findings[i].values[k].title, result.findings[i].values[k].title);
                    EXPECT_EQ(read.findings[i].values[k].unit, result.findings[i].values[k].unit);
                }
            }
        }
    }
    EXPECT_EQ(resultOf("").findings.size(), 7u);
    EXPECT_FALSE(resultOf("trimX:100,200").failure.empty());
}

TEST(ProfileJson, RefusesWhatIsNoSuchResult) {
    const std::string whole = toJson(resultOf("shift:0.5,-1"));
    const auto with = [&](const std::string& from, const std::string& to) {
        std::string text = whole;
        return text.replace(text.find(from), from.size(), to);
    };
    const std::pair<std::string, const char*> cases[] = {
        {"{", "is no JSON at byte"},
        {"{\"command\": \"grid\"}", "is one of the command 'grid', not of 'profile'"},
        {with("\"shift:0.5,-1\"", "\"shove:1\""), "holds no step in 'steps[0].step'"},
        {with("\"shift:0.5,-1\"", "\"\""), "holds no single step in 'steps[0].step'"},
        {with("\"line\"", "\"lines\""), "holds no known finding in 'findings[0].name'"},
        {with("\"points\": 200", "\"point\": 200"), "lacks the key 'points'"}};
    for (const auto& [json, words] : cases) {
        SCOPED_TRACE(words);
        try {
            profileFromJson(json);
            ADD_FAILURE() << "nothing was refused";
        } catch (const Error& error) {
            EXPECT_NE(std::string(error.what()).find(words), std::string::npos) << error.what();
        }
    }
}

} // namespace
