"""P2000-P2299: aftertreatment, throttle actuator control, fuel and air metering, oxygen sensors."""
from common import CIRCUIT, CIRCUIT_ERRATIC, CONTROL, family, put, run

run(2000, ["NOx Trap Efficiency Below Threshold (Bank 1)", "NOx Trap Efficiency Below Threshold (Bank 2)",
           "Diesel Particulate Filter Efficiency Below Threshold (Bank 1)",
           "Diesel Particulate Filter Efficiency Below Threshold (Bank 2)",
           "Intake Manifold Runner Control Stuck Open (Bank 1)", "Intake Manifold Runner Control Stuck Open (Bank 2)",
           "Intake Manifold Runner Control Stuck Closed (Bank 1)",
           "Intake Manifold Runner Control Stuck Closed (Bank 2)"])
family(2008, "Intake Manifold Runner Control", ["Circuit/Open", "Circuit Low", "Circuit High"], "(Bank 1)")
family(2011, "Intake Manifold Runner Control", ["Circuit/Open", "Circuit Low", "Circuit High"], "(Bank 2)")
family(2014, "Intake Manifold Runner Position Sensor/Switch", CIRCUIT, "(Bank 1)")
family(2019, "Intake Manifold Runner Position Sensor/Switch", CIRCUIT, "(Bank 2)")
family(2024, "Evaporative Emissions (EVAP) Fuel Vapor Temperature Sensor",
       ["Circuit", "Performance", "Circuit Low Voltage", "Circuit High Voltage", "Circuit Intermittent"])
run(2029, ["Fuel Fired Heater Disabled", "Fuel Fired Heater Performance"])
family(2031, "Exhaust Gas Temperature Sensor", ["Circuit", "Circuit Low", "Circuit High"], "(Bank 1 Sensor 2)")
family(2034, "Exhaust Gas Temperature Sensor", ["Circuit", "Circuit Low", "Circuit High"], "(Bank 2 Sensor 2)")
family(2037, "Reductant Injection Air Pressure Sensor", CIRCUIT)
family(2042, "Reductant Temperature Sensor", CIRCUIT)
for start, bank, unit in ((2047, 1, 1), (2050, 2, 1), (2053, 1, 2), (2056, 2, 2)):
    family(start, "Reductant Injector", ["Circuit/Open", "Circuit Low", "Circuit High"], f"(Bank {bank} Unit {unit})")
family(2059, "Reductant Injection Air Pump", CONTROL)
family(2062, "Reductant Supply", CONTROL)
family(2065, 'Fuel Level Sensor "B"', CIRCUIT)
run(2070, ["Intake Manifold Tuning (IMT) Valve Stuck Open", "Intake Manifold Tuning (IMT) Valve Stuck Closed",
           "Electronic Throttle Control System - Ice Blockage",
           "Manifold Absolute Pressure/Mass Air Flow - Throttle Position Correlation at Idle",
           "Manifold Absolute Pressure/Mass Air Flow - Throttle Position Correlation at Higher Load"])
family(2075, "Intake Manifold Tuning (IMT) Valve Position Sensor/Switch", CIRCUIT)
for start, bank, sensor in ((2080, 1, 1), (2082, 2, 1), (2084, 1, 2), (2086, 2, 2)):
    family(start, "Exhaust Gas Temperature Sensor", ["Circuit Range/Performance", "Circuit Intermittent"],
           f"(Bank {bank} Sensor {sensor})")
for start, letter, bank in ((2088, "A", 1), (2090, "B", 1), (2092, "A", 2), (2094, "B", 2)):
    family(start, f'"{letter}" Camshaft Position Actuator Control', ["Circuit Low", "Circuit High"], f"(Bank {bank})")
run(2096, [f"Post Catalyst Fuel Trim System Too {mix} (Bank {bank})" for bank in (1, 2) for mix in ("Lean", "Rich")])

TAC = "Throttle Actuator Control"
run(2100, [f"{TAC} Motor Circuit/Open", f"{TAC} Motor Circuit Range/Performance", f"{TAC} Motor Circuit Low",
           f"{TAC} Motor Circuit High", f"{TAC} System - Forced Idle", f"{TAC} System - Forced Engine Shutdown",
           f"{TAC} System - Forced Limited Power", f"{TAC} Module Processor", f"{TAC} Module Performance",
           'Throttle/Pedal Position Sensor "A" Minimum Stop Performance', f"{TAC} System - Forced Limited RPM",
           f"{TAC} System - Stuck Open", f"{TAC} System - Stuck Closed"])
run(2113, [f'Throttle/Pedal Position Sensor "{letter}" Minimum Stop Performance' for letter in "BCDEF"])
run(2118, [f"{TAC} Motor Current Range/Performance", f"{TAC} Throttle Body Range/Performance"])
for start, letter in ((2120, "D"), (2125, "E"), (2130, "F")):
    family(start, f'Throttle/Pedal Position Sensor/Switch "{letter}"', CIRCUIT)
run(2135, [f'Throttle/Pedal Position Sensor/Switch "{a}"/"{b}" Voltage Correlation'
           for a, b in ("AB", "AC", "BC", "DE", "DF", "EF")])
run(2141, ["Exhaust Gas Recirculation Throttle Control Circuit Low",
           "Exhaust Gas Recirculation Throttle Control Circuit High"])
family(2143, "Exhaust Gas Recirculation Vent", CONTROL)
for start, letter in ((2146, "A"), (2149, "B"), (2152, "C"), (2155, "D")):
    family(start, f'Fuel Injector Group "{letter}" Supply Voltage', ["Circuit/Open", "Circuit Low", "Circuit High"])
family(2158, 'Vehicle Speed Sensor "B"', ["", "Range/Performance", "Circuit Low", "Intermittent/Erratic/High"])
put(2162, 'Vehicle Speed Sensor "A"/"B" Correlation')
run(2163, [f'Throttle/Pedal Position Sensor "{letter}" Maximum Stop Performance' for letter in "ABCDEF"])
family(2169, "Exhaust Pressure Regulator Vent Solenoid", CONTROL)
run(2172, [f"{TAC} System - Sudden High Airflow Detected", f"{TAC} System - High Airflow Detected",
           f"{TAC} System - Sudden Low Airflow Detected", f"{TAC} System - Low Airflow Detected",
           f"{TAC} System - Idle Position Not Learned"])
run(2177, [f"System Too {mix} Off Idle (Bank {bank})" for bank in (1, 2) for mix in ("Lean", "Rich")])
put(2181, "Cooling System Performance")
family(2182, "Engine Coolant Temperature Sensor 2", CIRCUIT_ERRATIC)
run(2187, [f"System Too {mix} at Idle (Bank {bank})" for bank in (1, 2) for mix in ("Lean", "Rich")])
run(2191, [f"System Too {mix} at Higher Load (Bank {bank})" for bank in (1, 2) for mix in ("Lean", "Rich")])
run(2195, [f"O2 Sensor Signal Biased/Stuck {mix} (Bank {bank} Sensor 1)" for bank in (1, 2) for mix in ("Lean", "Rich")])
put(2199, "Intake Air Temperature Sensor 1/2 Correlation")

for start, bank in ((2200, 1), (2213, 2)):
    family(start, "NOx Sensor", CIRCUIT, f"(Bank {bank})")
    family(start + 5, "NOx Sensor Heater", CONTROL, f"(Bank {bank})")
    family(start + 8, "NOx Sensor Heater Sense", CIRCUIT, f"(Bank {bank})")
family(2226, "Barometric Pressure", CIRCUIT)
run(2231, [f"O2 Sensor Signal Circuit Shorted to Heater Circuit (Bank {b} Sensor {s})"
           for b in (1, 2) for s in (1, 2, 3)])
family(2237, "O2 Sensor Positive Current", CONTROL, "(Bank 1 Sensor 1)")
family(2240, "O2 Sensor Positive Current", CONTROL, "(Bank 2 Sensor 1)")
REFERENCE = ["Circuit/Open", "Performance", "Circuit Low", "Circuit High"]
family(2243, "O2 Sensor Reference Voltage", REFERENCE, "(Bank 1 Sensor 1)")
family(2247, "O2 Sensor Reference Voltage", REFERENCE, "(Bank 2 Sensor 1)")
family(2251, "O2 Sensor Negative Current", CONTROL, "(Bank 1 Sensor 1)")
family(2254, "O2 Sensor Negative Current", CONTROL, "(Bank 2 Sensor 1)")
run(2257, [f'Secondary Air Injection System Control "{letter}" Circuit {level}'
           for letter in "AB" for level in ("Low", "High")])
run(2261, ["Turbo/Super Charger Bypass Valve - Mechanical",
           "Turbo/Super Charger Boost Pressure Not Detected - Mechanical",
           "Turbo/Super Charger Boost System Performance"])
family(2264, "Water in Fuel Sensor", CIRCUIT)
put(2269, "Water in Fuel Condition")
run(2270, [f"O2 Sensor Signal Biased/Stuck {mix} (Bank {bank} Sensor {sensor})"
           for sensor in (2, 3) for bank in (1, 2) for mix in ("Lean", "Rich")])
run(2278, ["O2 Sensor Signals Swapped Bank 1 Sensor 3 / Bank 2 Sensor 3", "Intake Air System Leak",
           "Air Flow Restriction / Air Leak Between Air Filter and MAF", "Air Leak Between MAF and Throttle Body",
           "Air Leak Between Throttle Body and Intake Valves"])
family(2283, "Injector Control Pressure Sensor", CIRCUIT)
run(2288, ["Injector Control Pressure Too High", "Injector Control Pressure Too High - Engine Off",
           "Injector Control Pressure Too Low", "Injector Control Pressure Too Low - Engine Cranking",
           "Injector Control Pressure Erratic", "Fuel Pressure Regulator 2 Performance"])
family(2294, "Fuel Pressure Regulator 2", ["Control Circuit", "Control Circuit Low", "Control Circuit High"])
run(2297, ["O2 Sensor Out of Range During Deceleration (Bank 1 Sensor 1)",
           "O2 Sensor Out of Range During Deceleration (Bank 2 Sensor 1)",
           "Brake Pedal Position / Accelerator Pedal Position Incompatible"])
