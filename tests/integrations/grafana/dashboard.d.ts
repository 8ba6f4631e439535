// The dashboard's type: Grafana's own, made strict. A panel has the options of its type and queries for Prometheus.
import type { QueryVariableModel } from "@grafana/data";
import type { Dashboard, FieldConfigSource, Panel, RowPanel, VariableModel } from "@grafana/schema";
import type * as BarGauge from "@grafana/schema/dist/esm/raw/composable/bargauge/panelcfg/x/BarGaugePanelCfg_types.gen";
import type * as Stat from "@grafana/schema/dist/esm/raw/composable/stat/panelcfg/x/StatPanelCfg_types.gen";
import type * as Table from "@grafana/schema/dist/esm/raw/composable/table/panelcfg/x/TablePanelCfg_types.gen";
import type * as TimeSeries from "@grafana/schema/dist/esm/raw/composable/timeseries/panelcfg/x/TimeSeriesPanelCfg_types.gen";
import type { PrometheusDataQuery } from "prometheus-query";

// As written in JSON: the values of an enumeration are plain strings.
type Plain<T> = unknown extends T ? T
  : T extends string ? `${T}`
  : T extends number | boolean | null | undefined ? T
  : T extends (infer Element)[] ? Plain<Element>[]
  : { [Key in keyof T]: Plain<T[Key]> };

// Grafana has a default for every option of a panel.
type Optional<T> = T extends unknown[] ? T : T extends object ? { [Key in keyof T]?: Optional<T[Key]> } : T;

type PanelOf<Type extends string, Options, Custom = object> =
  Omit<Panel, "type" | "options" | "targets" | "fieldConfig"> & {
    type: Type;
    title: string;
    options: Optional<Options>;
    fieldConfig: FieldConfigSource<Optional<Custom>>;
    targets: PrometheusDataQuery[];
  };

type AnyPanel =
  | RowPanel
  | PanelOf<"bargauge", BarGauge.Options>
  | PanelOf<"stat", Stat.Options>
  | PanelOf<"table", Table.Options>
  | PanelOf<"timeseries", TimeSeries.Options, TimeSeries.FieldConfig>;

// The schema of the file leaves out the definition of a variable, which Grafana's editor reads and writes.
type Variable = VariableModel & Partial<Pick<QueryVariableModel, "definition">>;

export type CheckedDashboard = Plain<Omit<Dashboard, "panels" | "templating"> & {
  panels: AnyPanel[];
  templating: { list: Variable[] };
}>;
