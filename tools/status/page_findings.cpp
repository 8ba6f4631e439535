// The findings on the HTML page: their table, and what each object's card repeats of them.
#include <algorithm>

#include "snapshot/text.h"
#include "tools/status/facts.h"
#include "tools/status/page_parts.h"
#include "tools/status/rules.h"

std::string severityBadge(Severity severity) {
    return badge(severityText(severity), severityText(severity));
}

std::string statusBadge(Severity worst) {
    return badge(statusText(worst), statusText(worst));
}

std::string objectName(const Object& object) {
    Object bare = object;
    bare.name.clear();
    const std::string name =
        object.name.empty() ? std::string() : std::string(" ") + isolatedText(object.name);
    return htmlText(shortObjectText(bare)) + name;
}

std::string anchorOf(const Object& object) {
    const std::string controller = std::string("c") + std::to_string(object.controller);
    const std::string number = std::to_string(object.number);
    switch (object.kind) {
    case ObjectKind::battery:
        return controller + "-battery";
    case ObjectKind::enclosure:
        return controller + "-e" + number;
    case ObjectKind::drive:
        return controller + "-d" + number;
    case ObjectKind::logicalDrive:
        return controller + "-l" + number;
    default:
        return controller + "-controller";
    }
}

// A finding can be about an object that has disappeared, which the page does not show.
static bool isShown(const Snapshot& snapshot, const Object& object) {
    const Controller* controller =
        object.kind == ObjectKind::host ? nullptr : findController(snapshot, object.controller);
    if (controller == nullptr)
        return false;
    switch (object.kind) {
    case ObjectKind::battery:
        return hasBattery(*controller);
    case ObjectKind::enclosure:
        return findEnclosure(*controller, object.number) != nullptr;
    case ObjectKind::drive:
        return findDrive(*controller, object.number) != nullptr;
    case ObjectKind::logicalDrive:
        return findLogicalDrive(*controller, object.number) != nullptr;
    default:
        return true;
    }
}

static std::string objectCell(const Snapshot& snapshot, const Object& object) {
    const std::string name = objectName(object);
    std::string linked =
        isShown(snapshot, object) ? "<a href=\"#" + anchorOf(object) + "\">" + name + "</a>" : name;
    if (object.kind == ObjectKind::host || object.kind == ObjectKind::controller)
        return linked;
    return linked + " of controller " + std::to_string(object.controller);
}

static std::string problemText(const Finding& finding) {
    return htmlText(finding.text) +
           (finding.percent ? ", " + std::to_string(*finding.percent) + "%" : std::string());
}

static void addRow(const Report& report, const Finding& finding, std::string* page) {
    *page += "<tr><td>" + severityBadge(finding.rule->severity) + "</td><th scope=\"row\">" +
             objectCell(report.snapshot, finding.object) + "</th><td>" + problemText(finding) +
             ". <span class=\"action\">See &quot;" + htmlText(finding.rule->action) +
             "&quot;.</span></td></tr>\n";
}

static void addTable(const Report& report, std::string* page) {
    *page += "<table class=\"findings\">\n<caption>Findings, the worst first. What to do is in the named "
             "section of cli-status(8).</caption>\n<thead><tr><th scope=\"col\">Severity</th>"
             "<th scope=\"col\">Object</th><th scope=\"col\">Problem</th></tr></thead>\n<tbody>\n";
    for (const Finding& finding : report.findings)
        addRow(report, finding, page);
    *page += "</tbody>\n</table>\n";
}

void addFindings(const Report& report, std::string* page) {
    *page += "<section id=\"findings\" aria-labelledby=\"findings-heading\">\n"
             "<h2 id=\"findings-heading\">Findings</h2>\n";
    if (report.findings.empty())
        *page += "<p>Nothing was found.</p>\n";
    else
        addTable(report, page);
    *page += "</section>\n";
}

Severity worstOf(const Report& report, const Object& object) {
    Findings own;
    std::copy_if(report.findings.begin(), report.findings.end(), std::back_inserter(own),
                 [&](const Finding& finding) { return finding.object == object; });
    return worstSeverity(own);
}

static void addNotes(const Report& report, const Object& object, std::string* page) {
    std::string items;
    for (const Finding& finding : report.findings)
        if (finding.object == object)
            items += "<li>" + severityBadge(finding.rule->severity) + " " + problemText(finding) + "</li>\n";
    if (!items.empty())
        *page += "<ul class=\"notes\">\n" + items + "</ul>\n";
}

void openCard(const Report& report, const Object& object, const std::string& html, std::string* page) {
    *page += "<article class=\"card\" id=\"" + anchorOf(object) + "\">\n<h4>" + html + " " +
             statusBadge(worstOf(report, object)) + "</h4>\n";
    addNotes(report, object, page);
}

void closeCard(std::string* page) {
    *page += "</article>\n";
}
