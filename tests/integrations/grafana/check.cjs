// Checks a dashboard with Grafana's own packages: its types in Grafana 10 and 13, and its units, calculations and
// transformations in Grafana 10, whose code is run. Then plants errors, each of which must be found.
//
//   node check.cjs MODULES HERE DASHBOARD
const fs = require("fs");
const os = require("os");
const path = require("path");
const [modules, here, dashboardFile] = process.argv.slice(2);
const load = (name) => require(path.join(modules, name));
const ts = load("typescript");
// Grafana's code expects a browser.
globalThis.window = globalThis;
if (!globalThis.navigator) globalThis.navigator = { languages: ["en-US"] };
const grafana = load("@grafana/data");

const RAW = "dist/esm/raw/composable";
const SCHEMAS = { "Grafana 10": "@grafana/schema", "Grafana 13": "grafana-schema-13" };

function versionOf(name) {
  return JSON.parse(fs.readFileSync(path.join(modules, name, "package.json"), "utf8")).version;
}

function compilerOptions(schema) {
  const types = path.join(modules, schema, load(`${schema}/package.json`).types);
  return {
    strict: true, noEmit: true, skipLibCheck: true, types: [],
    module: ts.ModuleKind.ESNext, moduleResolution: ts.ModuleResolutionKind.Bundler,
    paths: {
      "@grafana/schema": [types],
      [`@grafana/schema/${RAW}/*`]: [path.join(modules, schema, `${RAW}/*.d.ts`)],
      "@grafana/data": [path.join(modules, "@grafana/data/dist/index.d.ts")],
      // Grafana 13 no longer publishes this type.
      "prometheus-query": [path.join(modules, "@grafana/schema", RAW,
        "prometheus/dataquery/x/PrometheusDataQuery_types.gen.d.ts")],
    },
  };
}

// The complaints about each dashboard, by name.
function typeErrors(dashboards, schema, work) {
  fs.copyFileSync(path.join(here, "dashboard.d.ts"), path.join(work, "dashboard.d.ts"));
  const files = Object.keys(dashboards).map((name, index) => {
    const file = path.join(work, `${index}.ts`);
    fs.writeFileSync(file, `import type { CheckedDashboard } from "./dashboard";\n` +
      `export const dashboard: CheckedDashboard = ${JSON.stringify(dashboards[name], null, 1)};\n`);
    return file;
  });
  const program = ts.createProgram([path.join(work, "dashboard.d.ts"), ...files], compilerOptions(schema));
  const errors = Object.fromEntries(Object.keys(dashboards).map((name) => [name, []]));
  for (const each of ts.getPreEmitDiagnostics(program)) {
    const text = ts.flattenDiagnosticMessageText(each.messageText, "\n");
    const index = each.file ? files.indexOf(each.file.fileName) : -1;
    if (index < 0) throw new Error(`${each.file?.fileName}: ${text}`);
    const { line } = each.file.getLineAndCharacterOfPosition(each.start);
    errors[Object.keys(dashboards)[index]].push(`line ${line - 1}: ${text}`);
  }
  // Types that were not found would accept everything.
  const checker = program.getTypeChecker();
  const source = program.getSourceFile(path.join(work, "dashboard.d.ts"));
  source.statements.filter(ts.isImportDeclaration).forEach((each) => {
    if (!checker.getSymbolAtLocation(each.moduleSpecifier)) throw new Error(`${each.getText()}: not found`);
  });
  return errors;
}

function organized(options, columns) {
  const frame = grafana.toDataFrame({ fields: columns.map((name) => ({ name, values: [1] })) });
  let names = [];
  grafana.transformDataFrame([{ id: "organize", options }], [frame]).subscribe({
    next: (frames) => (names = frames.flatMap((each) => each.fields.map((field) => grafana.getFieldDisplayName(field)))),
    error: (error) => (names = [error.message]),
  });
  return names;
}

// The columns that are left, with the names they are given.
function transformationErrors(panel) {
  return (panel.transformations ?? []).flatMap(({ id, options }) => {
    if (!grafana.standardTransformersRegistry.getIfExists(id)) return [`no transformation ${id}`];
    const hidden = Object.keys(options.excludeByName ?? {});
    const renamed = Object.entries(options.renameByName ?? {});
    const shown = organized(options, [...hidden, ...renamed.map(([name]) => name)]);
    const wanted = renamed.filter(([name]) => !hidden.includes(name)).map(([, name]) => name);
    return wanted.length > 0 && wanted.join() === shown.join() ? [] : [`shows ${shown.join()}`];
  });
}

function panelErrors(panel) {
  const units = grafana.getValueFormats().flatMap((group) => group.submenu.map((unit) => unit.value));
  const unit = panel.fieldConfig?.defaults?.unit;
  const calculations = panel.options?.reduceOptions?.calcs ?? [];
  return [
    ...(unit === undefined || units.includes(unit) ? [] : [`no unit ${unit}`]),
    ...calculations.filter((id) => !grafana.fieldReducers.getIfExists(id)).map((id) => `no calculation ${id}`),
    ...transformationErrors(panel),
  ].map((text) => `${panel.title}: ${text}`);
}

const codeErrors = (dashboard) => (dashboard.panels ?? []).flatMap(panelErrors);

const find = (dashboard, type) => dashboard.panels.find((panel) => panel.type === type);

function rename(object, from, to) {
  object[to] = object[from];
  delete object[from];
}

// By name: how the error is made.
const PLANTED = {
  "a misspelled field of the dashboard": (each) => rename(each, "refresh", "refersh"),
  "a misspelled field of a panel": (each) => rename(find(each, "stat"), "fieldConfig", "fieldsConfig"),
  "a misspelled option": (each) => rename(find(each, "stat").options, "colorMode", "colourMode"),
  "a misspelled value of an option": (each) => (find(each, "stat").options.colorMode = "backdrop"),
  "a misspelled field of a query": (each) => rename(find(each, "table").targets[0], "expr", "expression"),
  "a format that queries do not have": (each) => (find(each, "table").targets[0].format = "tabel"),
  "a panel type that does not exist": (each) => (find(each, "timeseries").type = "graf"),
  "another type's options": (each) => (find(each, "bargauge").type = "stat"),
  "a threshold that is text": (each) => (find(each, "stat").fieldConfig.defaults.thresholds.steps[1].value = "1"),
  "a panel without a place": (each) => delete find(each, "table").gridPos.x,
  "a misspelled field of a variable": (each) => rename(each.templating.list[1], "includeAll", "inculdeAll"),
  "a refresh that variables do not have": (each) => (each.templating.list[1].refresh = 7),
  "a unit that does not exist": (each) => (find(each, "timeseries").fieldConfig.defaults.unit = "celcius"),
  "a calculation that does not exist": (each) => (find(each, "stat").options.reduceOptions.calcs = ["lastNull"]),
  "a transformation that does not exist": (each) => (find(each, "table").transformations[0].id = "organise"),
  "an option that the transformation lacks": (each) =>
    rename(find(each, "table").transformations[0].options, "renameByName", "renamedByName"),
};

function variants(dashboard) {
  const all = { dashboard };
  for (const [name, plant] of Object.entries(PLANTED)) {
    all[name] = structuredClone(dashboard);
    plant(all[name]);
  }
  return all;
}

function main() {
  const all = variants(JSON.parse(fs.readFileSync(dashboardFile, "utf8")));
  const found = Object.fromEntries(Object.keys(all).map((name) => [name, codeErrors(all[name])]));
  const work = fs.mkdtempSync(path.join(os.tmpdir(), "dashboard."));
  const missed = [];
  try {
    for (const [grafanaName, schema] of Object.entries(SCHEMAS)) {
      const errors = typeErrors(all, schema, work);
      for (const name of Object.keys(all)) {
        const both = [...errors[name], ...found[name]];
        if (name === "dashboard") both.forEach((text) => missed.push(`${grafanaName}: ${text}`));
        else if (both.length === 0) missed.push(`${grafanaName}: not found: ${name}`);
      }
      console.log(`${grafanaName}: types of @grafana/schema ${versionOf(schema)}`);
    }
  } finally {
    fs.rmSync(work, { recursive: true });
  }
  console.log(`units, calculations and transformations of @grafana/data ${versionOf("@grafana/data")}; ` +
    `typescript ${ts.version}, node ${process.version}; ${Object.keys(PLANTED).length} planted errors`);
  missed.forEach((text) => console.log(text));
  return missed.length === 0 ? 0 : 1;
}

// Two of Grafana's names are for the same transformation.
const transformers = new Map(Object.values(grafana.standardTransformers).map((each) => [each.id, each]));
grafana.standardTransformersRegistry.setInit(() =>
  [...transformers.values()].map((each) => ({ id: each.id, name: each.name, transformation: each, editor: null })));
process.exitCode = main();
