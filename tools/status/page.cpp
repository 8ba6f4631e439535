// The frame of the HTML page: its head, its summary, and the order of its parts.
#include "tools/status/page.h"

#include <unistd.h>

#include "tools/status/page_parts.h"

PageOrigin pageOrigin() {
    char name[256] = {};
    const bool known = gethostname(name, sizeof name - 1) == 0 && name[0] != '\0';
    return {known ? name : "this host", std::time(nullptr)};
}

static std::string timeText(std::time_t time, const char* format) {
    std::tm parts = {};
    char text[64];
    gmtime_r(&time, &parts);
    return std::string(text, std::strftime(text, sizeof text, format, &parts));
}

static void addHead(const Report& report, const PageOrigin& origin, std::string* page) {
    *page += "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
             "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src 'sha256-" +
             std::string(kPageStyleDigest) +
             "'; base-uri 'none'; form-action 'none'\">\n"
             "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
             "<meta name=\"color-scheme\" content=\"light dark\">\n"
             "<title>" +
             htmlText(origin.host) + ": " + summaryText(report.snapshot, report.findings) +
             "</title>\n<style>" + kPageStyle + "</style>\n</head>\n";
}

static void addHeader(const Report& report, const PageOrigin& origin, std::string* page) {
    *page += "<header>\n<h1>RAID adapters of " + isolatedText(origin.host) + "</h1>\n<p class=\"summary\">" +
             statusBadge(worstSeverity(report.findings)) + " " +
             summaryText(report.snapshot, report.findings) +
             "</p>\n<p>Written by cli-status at <time datetime=\"" +
             timeText(origin.written, "%Y-%m-%dT%H:%M:%SZ") + "\">" +
             timeText(origin.written, "%Y-%m-%d %H:%M:%S UTC") +
             "</time>. It does not update itself.</p>\n</header>\n";
}

static Severity worstOfController(const Report& report, const Controller& controller) {
    Findings own;
    for (const Finding& finding : report.findings)
        if (finding.object.kind != ObjectKind::host && finding.object.controller == controller.id)
            own.push_back(finding);
    return worstSeverity(own);
}

static void addContents(const Report& report, std::string* page) {
    *page += "<nav aria-label=\"Contents\">\n<ul>\n<li><a href=\"#findings\">Findings</a></li>\n";
    for (const Controller& controller : report.snapshot.controllers) {
        const std::string id = std::to_string(controller.id);
        page->append("<li><a href=\"#c").append(id).append("\">Controller ").append(id).append("</a> ");
        *page += statusBadge(worstOfController(report, controller)) + "</li>\n";
    }
    *page += "</ul>\n</nav>\n";
}

std::string formatPage(const Report& report, const PageOrigin& origin) {
    std::string page;
    addHead(report, origin, &page);
    page += "<body>\n";
    addHeader(report, origin, &page);
    addContents(report, &page);
    page += "<main>\n";
    addFindings(report, &page);
    for (const Controller& controller : report.snapshot.controllers)
        addController(report, controller, &page);
    page += "</main>\n</body>\n</html>\n";
    return page;
}
