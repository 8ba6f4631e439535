// The metrics are valid for any adapter text, and their reader refuses what is not.
#include <gtest/gtest.h>

#include "tests/status/metrics_text.h"
#include "tests/status/page_samples.h"
#include "tools/status/format.h"
#include "tools/status/rules.h"

static std::string metricsOf(const Snapshot& snapshot) {
    const Limits limits;
    return formatMetrics({snapshot, evaluate(snapshot, limits, nullptr), limits});
}

TEST(Metrics, OfSamplesAreValid) {
    for (const PageSample& sample : pageSamples())
        EXPECT_EQ(metricsProblem(metricsOf(sample.make())), "") << sample.name;
}

TEST(Metrics, AreValidWithAnyText) {
    for (const std::string_view text : untrustedTexts())
        EXPECT_EQ(metricsProblem(metricsOf(withTexts(text))), "") << text;
}

TEST(MetricsText, RefusesWhatPrometheusRefuses) {
    const std::string head = "# HELP sataraid_a A.\n# TYPE sataraid_a gauge\n";
    EXPECT_EQ(metricsProblem(head + "sataraid_a 1\n"), "");
    EXPECT_EQ(metricsProblem(head + "sataraid_a{b=\"c\\\\d\\\"e\",f=\"\"} -1.50\n"), "");
    for (const char* sample : {"sataraid_b 1\n", "sataraid_a{b=\"c\\d\"} 1\n", "sataraid_a{b=\"c\"\n",
                               "sataraid_a{b=\"c\",b=\"d\"} 1\n", "sataraid_a{} 1\n", "sataraid_a x\n",
                               "sataraid_a 1.\n", "sataraid_a  1\n", "sataraid_a 1\nsataraid_a 2\n", "\n",
                               "sataraid_a 1", "sataraid_a{b=\"\xFF\"} 1\n"})
        EXPECT_NE(metricsProblem(head + sample), "") << sample;
    EXPECT_NE(metricsProblem(head + "sataraid_a 1\n" + head + "sataraid_a{b=\"\"} 1\n"), "");
    EXPECT_NE(metricsProblem("# TYPE sataraid_a gauge\nsataraid_a 1\n"), "");
    EXPECT_NE(metricsProblem("# HELP sataraid_a A.\nsataraid_a 1\n"), "");
    EXPECT_NE(metricsProblem(""), "");
}
