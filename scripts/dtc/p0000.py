"""P0001-P0299: fuel and air metering, auxiliary emission controls, injector circuits."""
from common import CIRCUIT, CIRCUIT_ERRATIC, CONTROL, family, put, run

run(1, ["Fuel Volume Regulator Control Circuit/Open", "Fuel Volume Regulator Control Circuit Range/Performance",
        "Fuel Volume Regulator Control Circuit Low", "Fuel Volume Regulator Control Circuit High"])
family(5, 'Fuel Shutoff Valve "A"', CONTROL)
run(8, ["Engine Position System Performance (Bank 1)", "Engine Position System Performance (Bank 2)"])
for start, bank in ((10, 1), (20, 2)):
    run(start, [f'"A" Camshaft Position Actuator Circuit (Bank {bank})',
                f'"A" Camshaft Position - Timing Over-Advanced or System Performance (Bank {bank})',
                f'"A" Camshaft Position - Timing Over-Retarded (Bank {bank})',
                f'"B" Camshaft Position Actuator Circuit (Bank {bank})',
                f'"B" Camshaft Position - Timing Over-Advanced or System Performance (Bank {bank})',
                f'"B" Camshaft Position - Timing Over-Retarded (Bank {bank})'])
run(16, [f"Crankshaft Position - Camshaft Position Correlation (Bank {b} Sensor {s})"
         for b, s in ((1, "A"), (1, "B"), (2, "A"), (2, "B"))])
run(26, [f"{valve} Valve Control Solenoid Circuit Range/Performance (Bank {bank})"
         for bank in (1, 2) for valve in ("Intake", "Exhaust")])


def heater(start, bank, sensor):
    run(start, [f"HO2S Heater Control Circuit (Bank {bank} Sensor {sensor})",
                f"HO2S Heater Control Circuit Low (Bank {bank} Sensor {sensor})",
                f"HO2S Heater Control Circuit High (Bank {bank} Sensor {sensor})"])


heater(30, 1, 1)
family(33, "Turbo/Super Charger Bypass Valve", ["Control Circuit", "Control Circuit Low", "Control Circuit High"])
heater(36, 1, 2)
put(39, "Turbo/Super Charger Bypass Valve Control Circuit Range/Performance")
put(40, "O2 Sensor Signals Swapped Bank 1 Sensor 1 / Bank 2 Sensor 1")
put(41, "O2 Sensor Signals Swapped Bank 1 Sensor 2 / Bank 2 Sensor 2")
heater(42, 1, 3)
family(45, 'Turbo/Super Charger Boost Control "A"',
       ["Circuit/Open", "Circuit Range/Performance", "Circuit Low", "Circuit High"])
put(49, "Turbo/Super Charger Turbine Overspeed")
heater(50, 2, 1)
run(53, [f"HO2S Heater Resistance (Bank 1 Sensor {s})" for s in (1, 2, 3)])
heater(56, 2, 2)
run(59, [f"HO2S Heater Resistance (Bank 2 Sensor {s})" for s in (1, 2, 3)])
heater(62, 2, 3)
run(65, ["Air Assisted Injector Control Range/Performance", "Air Assisted Injector Control Circuit or Circuit Low",
         "Air Assisted Injector Control Circuit High", "MAP/MAF - Throttle Position Correlation",
         "Manifold Absolute Pressure - Barometric Pressure Correlation"])
family(70, "Ambient Air Temperature Sensor", CIRCUIT)
for start, valve, bank in ((75, "Intake", 1), (78, "Exhaust", 1), (81, "Intake", 2), (84, "Exhaust", 2)):
    family(start, f"{valve} Valve Control Solenoid", ["Circuit", "Circuit Low", "Circuit High"], f"(Bank {bank})")
run(87, ["Fuel Rail/System Pressure - Too Low", "Fuel Rail/System Pressure - Too High",
         "Fuel Pressure Regulator 1 Performance"])
family(90, "Fuel Pressure Regulator 1", ["Control Circuit", "Control Circuit Low", "Control Circuit High"])
run(93, ["Fuel System Leak Detected - Large Leak", "Fuel System Leak Detected - Small Leak"])
family(95, "Intake Air Temperature Sensor 2", CIRCUIT_ERRATIC)
family(100, 'Mass or Volume Air Flow "A"', CIRCUIT_ERRATIC)
family(105, "Manifold Absolute Pressure/Barometric Pressure", CIRCUIT)
family(110, "Intake Air Temperature Sensor 1", CIRCUIT, "(Bank 1)")
family(115, "Engine Coolant Temperature Sensor 1", CIRCUIT_ERRATIC)
family(120, 'Throttle/Pedal Position Sensor/Switch "A"', CIRCUIT)
run(125, ["Insufficient Coolant Temperature for Closed Loop Fuel Control",
          "Insufficient Coolant Temperature for Stable Operation", "Intake Air Temperature Too High",
          "Coolant Thermostat (Coolant Temperature Below Thermostat Regulating Temperature)",
          "Barometric Pressure Too Low"])

O2 = ["Circuit", "Circuit Low Voltage", "Circuit High Voltage", "Circuit Slow Response",
      "Circuit No Activity Detected", "Heater Circuit"]
for start, bank, sensor in ((130, 1, 1), (136, 1, 2), (142, 1, 3), (150, 2, 1), (156, 2, 2), (162, 2, 3)):
    family(start, "O2 Sensor", O2, f"(Bank {bank} Sensor {sensor})")
run(148, ["Fuel Delivery Error", "Fuel Timing Error"])
run(168, ["Fuel Temperature Too High", "Incorrect Fuel Composition"])
for start, bank in ((170, 1), (173, 2)):
    run(start, [f"Fuel Trim (Bank {bank})", f"System Too Lean (Bank {bank})", f"System Too Rich (Bank {bank})"])
family(176, "Fuel Composition Sensor", CIRCUIT[:4])
family(180, 'Fuel Temperature Sensor "A"', CIRCUIT)
family(185, 'Fuel Temperature Sensor "B"', CIRCUIT)
family(190, 'Fuel Rail Pressure Sensor "A"', CIRCUIT)
family(195, "Engine Oil Temperature Sensor", CIRCUIT)

put(200, "Injector Circuit/Open")
run(201, [f"Injector Circuit/Open - Cylinder {n}" for n in range(1, 13)])
run(213, ["Cold Start Injector 1", "Cold Start Injector 2", "Engine Shutoff Solenoid",
          "Injector/Injection Timing Control Circuit", "Engine Coolant Over Temperature Condition",
          "Transmission Fluid Over Temperature Condition", "Engine Overspeed Condition"])
family(220, 'Throttle/Pedal Position Sensor/Switch "B"', CIRCUIT)
family(225, 'Throttle/Pedal Position Sensor/Switch "C"', CIRCUIT)
run(230, ["Fuel Pump Primary Circuit", "Fuel Pump Secondary Circuit Low", "Fuel Pump Secondary Circuit High",
          "Fuel Pump Secondary Circuit Intermittent", 'Turbo/Super Charger "A" Overboost Condition'])
family(235, 'Turbo/Super Charger Boost Sensor "A"', CIRCUIT[:4])
family(239, 'Turbo/Super Charger Boost Sensor "B"', CIRCUIT[:4])
WASTEGATE = ["", "Range/Performance", "Low", "High"]
family(243, 'Turbo/Super Charger Wastegate Solenoid "A"', WASTEGATE)
family(247, 'Turbo/Super Charger Wastegate Solenoid "B"', WASTEGATE)
for start, letter in ((251, "A"), (256, "B")):
    run(start, [f'Injection Pump Fuel Metering Control "{letter}" {ending} (Cam/Rotor/Injector)'
                for ending in ("", "Range/Performance", "Low", "High", "Intermittent")])
for n in range(1, 13):
    run(261 + 3 * (n - 1), [f"Cylinder {n} Injector Circuit Low", f"Cylinder {n} Injector Circuit High",
                            f"Cylinder {n} Contribution/Balance"])
run(297, ["Vehicle Overspeed Condition", "Engine Oil Over Temperature", "Turbo/Super Charger Underboost"])
